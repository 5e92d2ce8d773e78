#include "platform/linux/LinuxWorkspace.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <algorithm>
#include <cstdlib>
#include <set>
#include <utility>

#include "platform/linux/DesktopNotification.h"
#include "platform/linux/ExecLine.h"

namespace harbor {
namespace {

constexpr std::string_view kMacScreenSaver = "/System/Library/CoreServices/ScreenSaverEngine.app";

constexpr std::chrono::seconds kTrust{2};

// The session bus answers such a question itself; should it hang, the answer is no.
constexpr int kBusTimeout = 500;

bool ownsName(std::string_view name) {
  const QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return false;
  QDBusMessage question = QDBusMessage::createMethodCall("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                                         "org.freedesktop.DBus", "NameHasOwner");
  question << QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
  const QDBusMessage answer = bus.call(question, QDBus::Block, kBusTimeout);
  return answer.type() == QDBusMessage::ReplyMessage && answer.arguments().value(0).toBool();
}

std::string lowercasedAscii(std::string text) {
  for (char& character : text) {
    if (character >= 'A' && character <= 'Z') character = static_cast<char>(character - 'A' + 'a');
  }
  return text;
}

}  // namespace

LinuxWorkspace::LinuxWorkspace(const DesktopEntries& entries, std::function<bool()> startScreenSaver)
    : entries_(entries), launcher_(entries), startScreenSaver_(std::move(startScreenSaver)) {
  if (!QCoreApplication::instance()) return;
  connection_ = XcbConnection::open();
  if (!connection_) return;
  windows_ = std::make_unique<WindowHintsReader>(*connection_);
  forgetAnswersWithTheWindows();
}

void LinuxWorkspace::forgetAnswersWithTheWindows() {
  connection_->intern({"_NET_CLIENT_LIST", "_NET_CURRENT_DESKTOP"});
  const xcb_atom_t list = connection_->atom("_NET_CLIENT_LIST");
  const xcb_atom_t desktop = connection_->atom("_NET_CURRENT_DESKTOP");
  connection_->selectEvents(connection_->root(), XCB_EVENT_MASK_PROPERTY_CHANGE);
  windowListChanges_ = connection_->onEvent([=, this](const XcbConnection::Event& event) {
    if ((event.response_type & 0x7f) != XCB_PROPERTY_NOTIFY) return;
    const auto& notify = reinterpret_cast<const xcb_property_notify_event_t&>(event);
    if (notify.atom == list || notify.atom == desktop) answers_.clear();
  });
}

std::vector<RunningApplication> LinuxWorkspace::runningApplications() const {
  std::vector<RunningApplication> applications;
  std::set<std::string> seen;  // the paths of the bundle URLs
  const auto append = [&](RunningApplication application) {
    const std::string key =
        application.bundleUrl ? application.bundleUrl->path : std::to_string(application.processIdentifier);
    if (seen.insert(key).second) {
      applications.push_back(std::move(application));
      return;
    }
    // One ordinary window makes the whole application a regular one.
    if (application.activationPolicy != ActivationPolicy::regular) return;
    for (RunningApplication& other : applications) {
      if (other.bundleUrl && other.bundleUrl->path == key) other.activationPolicy = ActivationPolicy::regular;
    }
  };

  if (windows_) {
    for (const WindowHints& hints : windows_->managed()) {
      if (auto application = applicationOf(hints)) append(std::move(*application));
    }
  }
  for (const ProcessInformation& process : ProcessInformation::all()) {
    const auto entry = entryOf(process);
    if (entry || macApplicationWithProgram(lastPathComponent(process.program())))
      append(applicationOf(entry, process, {}));
  }
  return applications;
}

std::optional<RunningApplication> LinuxWorkspace::frontmostApplication() const {
  const auto hints = windows_ ? windows_->active() : std::nullopt;
  return hints ? applicationOf(*hints) : std::nullopt;
}

std::optional<RunningApplication> LinuxWorkspace::runningApplication(std::int32_t processIdentifier) const {
  const auto now = std::chrono::steady_clock::now();
  if (now - answersSince_ > kTrust) {
    answers_.clear();
    answersSince_ = now;
  }
  if (const auto known = answers_.find(processIdentifier); known != answers_.end()) return known->second;
  auto answer = lookUp(processIdentifier);
  answers_.insert_or_assign(processIdentifier, answer);
  return answer;
}

std::optional<RunningApplication> LinuxWorkspace::lookUp(std::int32_t processIdentifier) const {
  const auto process = ProcessInformation::of(processIdentifier);
  std::optional<RunningApplication> found;
  if (windows_) {
    for (const WindowHints& hints : windows_->managed()) {
      if (hints.processIdentifier != processIdentifier || (found && !hints.isRegular)) continue;
      found = applicationOf(hints);
      if (hints.isRegular) return found;
    }
  }
  if (found || !process) return found;
  const auto entry = entryOf(*process);
  if (!entry && !macApplicationWithProgram(lastPathComponent(process->program()))) return std::nullopt;
  return applicationOf(entry, process, {});
}

bool LinuxWorkspace::isRunning(std::string_view bundleIdentifier) const {
  const auto applications = runningApplications();
  const bool runs = std::any_of(applications.begin(), applications.end(), [&](const RunningApplication& one) {
    return one.bundleIdentifier == bundleIdentifier ||
           (one.bundleUrl && entries_.withIdentifier(bundleIdentifier) == one.bundleUrl->path);
  });
  return runs || ownsName(bundleIdentifier);
}

std::optional<std::string> LinuxWorkspace::fullPathForApplication(std::string_view name) const {
  const MacApplication* row = macApplicationWithBundleName(name);
  if (!row) return entries_.withIdentifier(name);
  if (auto entry = entryOfMac(*row)) return entry;
  for (const std::string_view program : row->programs) {
    std::string path = entries_.environment().findProgram(program);
    if (!path.empty()) return path;
  }
  return std::nullopt;
}

bool LinuxWorkspace::openFile(const FileUrl& url) {
  if (url.path == kMacScreenSaver) return startScreenSaver_ && startScreenSaver_();
  return launcher_.openFile(url);
}

bool LinuxWorkspace::openUrl(std::string_view url) {
  if (launcher_.openUrl(url)) return true;
  notifyDesktop("The page cannot be opened",
                ("No application on this computer opens " + std::string(url)).c_str());
  return false;
}

Subscription LinuxWorkspace::onWillSleep(std::function<void()> handler) {
  return sleep_.onWillSleep(std::move(handler));
}

Subscription LinuxWorkspace::onDidWake(std::function<void()> handler) {
  return sleep_.onDidWake(std::move(handler));
}

Subscription LinuxWorkspace::onActiveSpaceDidChange(std::function<void()> handler) {
  if (!connection_) return {};
  connection_->intern({"_NET_CURRENT_DESKTOP", "_XROOTPMAP_ID"});
  const xcb_atom_t desktop = connection_->atom("_NET_CURRENT_DESKTOP");
  const xcb_atom_t wallpaper = connection_->atom("_XROOTPMAP_ID");
  connection_->selectEvents(connection_->root(), XCB_EVENT_MASK_PROPERTY_CHANGE);
  return connection_->onEvent(
      [=, root = connection_->root(), handler = std::move(handler)](const XcbConnection::Event& event) {
        if ((event.response_type & 0x7f) != XCB_PROPERTY_NOTIFY) return;
        const auto& notify = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        if (notify.window == root && (notify.atom == desktop || notify.atom == wallpaper)) handler();
      });
}

std::optional<RunningApplication> LinuxWorkspace::applicationOf(const WindowHints& hints) const {
  const auto process = ProcessInformation::of(hints.processIdentifier);
  std::optional<std::string> entry;
  if (process) {
    if (const auto flatpak = process->flatpakIdentifier()) entry = entries_.withIdentifier(*flatpak);
    if (!entry) {
      if (const auto snap = process->snapIdentifier()) entry = entries_.withIdentifier(*snap);
    }
  }
  if (!entry) entry = entryOf(hints);
  if (!entry && process) entry = entryOfLaunch(*process);
  if (!entry && process) entry = entryOf(*process);
  if (!entry) {
    for (const std::string& name : {hints.windowClass, lowercasedAscii(hints.windowClass), hints.instance}) {
      if (!entry && !name.empty()) entry = entries_.withIdentifier(name);
    }
  }
  if (!entry && !process && hints.windowClass.empty()) return std::nullopt;
  return applicationOf(entry, process, hints);
}

RunningApplication LinuxWorkspace::applicationOf(const std::optional<std::string>& entry,
                                                 const std::optional<ProcessInformation>& process,
                                                 const WindowHints& hints) const {
  RunningApplication application;
  application.processIdentifier = process ? process->processIdentifier : hints.processIdentifier;
  application.activationPolicy = hints.isRegular ? ActivationPolicy::regular : ActivationPolicy::accessory;
  const std::string program = process ? process->program() : std::string();
  application.name = process ? lastPathComponent(program) : hints.windowClass;
  const MacApplication* mac = macApplicationWithProgram(lastPathComponent(program));
  if (entry) {
    application.bundleUrl = FileUrl{*entry, false};
    const auto parsed = entries_.entryAt(*entry);
    if (parsed && !parsed->name.empty()) application.name = parsed->name;
    const std::string identifier = entries_.identifierOf(*entry);
    application.bundleIdentifier = identifier;
    mac = macApplicationWithDesktopIdentifier(identifier);
  } else if (process) {
    application.bundleUrl = FileUrl{program, false};
  }
  if (mac) application.bundleIdentifier = std::string(mac->bundleIdentifier);
  return application;
}

std::optional<std::string> LinuxWorkspace::entryOf(const WindowHints& hints) const {
  if (!hints.gtkApplicationIdentifier.empty()) {
    if (auto entry = entries_.withIdentifier(hints.gtkApplicationIdentifier)) return entry;
  }
  for (const std::string& name : {hints.windowClass, hints.instance}) {
    if (name.empty()) continue;
    if (auto entry = entries_.withWindowClass(name)) return entry;
  }
  return std::nullopt;
}

std::optional<std::string> LinuxWorkspace::entryOf(const ProcessInformation& process) const {
  const std::string program = process.program();
  const std::string name = lastPathComponent(program);
  // An interpreter that runs no script of its own belongs to nobody in particular.
  if (program == process.executable && isLauncherOrInterpreter(name)) return std::nullopt;
  if (auto entry = entries_.withProgram(program)) return entry;
  const MacApplication* mac = macApplicationWithProgram(name);
  return mac ? entryOfMac(*mac) : std::nullopt;
}

std::optional<std::string> LinuxWorkspace::entryOfLaunch(const ProcessInformation& process) const {
  // Children inherit the variable: it speaks of this process only when the second one names it.
  const auto number = process.environmentVariable("GIO_LAUNCHED_DESKTOP_FILE_PID");
  if (!number || std::strtol(number->c_str(), nullptr, 10) != process.processIdentifier) return std::nullopt;
  auto path = process.environmentVariable("GIO_LAUNCHED_DESKTOP_FILE");
  if (!path || !entries_.entryAt(*path)) return std::nullopt;
  return path;
}

std::optional<std::string> LinuxWorkspace::entryOfMac(const MacApplication& application) const {
  for (const std::string_view identifier : application.desktopIdentifiers) {
    if (identifier.empty()) continue;
    if (auto entry = entries_.withIdentifier(identifier)) return entry;
  }
  return std::nullopt;
}

}  // namespace harbor
