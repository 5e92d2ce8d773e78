#include "platform/linux/ApplicationLauncher.h"

#include <sys/stat.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QMimeDatabase>
#include <QString>
#include <QStringList>
#include <QVariantMap>
#include <algorithm>
#include <cstdlib>

#include "platform/linux/DetachedProcess.h"
#include "platform/linux/ExecLine.h"
#include "platform/linux/KeyFile.h"

namespace harbor {
namespace {

// A service that is started by its activation takes its time, but this waits on the main thread.
constexpr int kActivationTimeout = 2'000;

struct Terminal {
  std::string_view program;
  std::string_view separator;  // what stands before the command line; empty: nothing
};

constexpr Terminal kTerminals[] = {
    {"xdg-terminal-exec", ""}, {"x-terminal-emulator", "-e"}, {"gnome-terminal", "--"}, {"konsole", "-e"},
    {"xfce4-terminal", "-x"},  {"mate-terminal", "-x"},       {"xterm", "-e"},
};

bool isAssociated(const KeyFile& file, std::string_view group, std::string_view mimeType,
                  std::string_view identifier) {
  const auto list = file.list(group, mimeType);
  return std::find(list.begin(), list.end(), identifier) != list.end();
}

QString toQString(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

bool ApplicationLauncher::openFile(const FileUrl& url) const {
  struct stat status;
  if (stat(url.path.c_str(), &status) != 0) return false;
  if (url.path.ends_with(".desktop")) {
    const auto entry = entries_.entryAt(url.path);
    if (entry && !entry->hidden) return start(url.path, {});
  }
  const Target target{url.path, url.absoluteString()};
  const QMimeType type = QMimeDatabase().mimeTypeForFile(QString::fromLocal8Bit(url.path.c_str()));
  for (const QString& name : QStringList{type.name()} + type.allAncestors()) {
    const auto entry = defaultApplication(name.toStdString());
    if (entry && start(*entry, target)) return true;
  }
  return false;
}

bool ApplicationLauncher::openUrl(std::string_view url) const {
  const std::size_t colon = url.find(':');
  if (colon == std::string_view::npos || colon == 0 || url.find('\0') != std::string_view::npos) return false;
  if (const auto file = FileUrl::parse(url)) return openFile(*file);
  const auto entry = defaultApplication("x-scheme-handler/" + std::string(url.substr(0, colon)));
  return entry && start(*entry, {"", std::string(url)});
}

void ApplicationLauncher::reveal(const std::vector<FileUrl>& urls) const {
  if (urls.empty()) return;
  const std::string& first = urls.front().path;
  const FileUrl folder{first.substr(0, std::max<std::size_t>(first.rfind('/'), 1)), true};
  QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) {
    openFile(folder);
    return;
  }
  QStringList addresses;
  for (const FileUrl& url : urls)
    addresses << toQString(url.absoluteString());
  QDBusMessage call =
      QDBusMessage::createMethodCall("org.freedesktop.FileManager1", "/org/freedesktop/FileManager1",
                                     "org.freedesktop.FileManager1", "ShowItems");
  call << addresses << QString();
  auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call));
  QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher,
                   [&entries = entries_, folder, watcher] {
                     if (watcher->isError()) ApplicationLauncher(entries).openFile(folder);
                     watcher->deleteLater();
                   });
}

std::optional<std::string> ApplicationLauncher::defaultApplication(std::string_view mimeType) const {
  const XdgEnvironment& environment = entries_.environment();
  // In the order of the association rules: the user's choice before the system's, a desktop's own before the
  // one for all.
  std::vector<std::string> folders;
  if (!environment.configHome.empty()) folders.push_back(environment.configHome);
  folders.insert(folders.end(), environment.configDirectories.begin(), environment.configDirectories.end());
  const std::vector<std::string> applications = environment.applicationsFolders();
  folders.insert(folders.end(), applications.begin(), applications.end());
  std::vector<KeyFile> lists;
  for (const std::string& folder : folders) {
    for (const std::string& desktop : environment.currentDesktops) {
      std::string prefix = desktop;
      std::transform(prefix.begin(), prefix.end(), prefix.begin(), [](unsigned char character) {
        return static_cast<char>(character >= 'A' && character <= 'Z' ? character + 32 : character);
      });
      if (auto list = KeyFile::read(folder + "/" + prefix + "-mimeapps.list"))
        lists.push_back(std::move(*list));
    }
    if (auto list = KeyFile::read(folder + "/mimeapps.list")) lists.push_back(std::move(*list));
  }
  const auto installed = [this](const std::vector<std::string>& files) -> std::optional<std::string> {
    for (const std::string& file : files) {
      if (!file.ends_with(".desktop")) continue;
      if (auto path = entries_.withIdentifier(std::string_view(file).substr(0, file.size() - 8))) return path;
    }
    return std::nullopt;
  };
  for (const KeyFile& list : lists) {
    if (auto path = installed(list.list("Default Applications", mimeType))) return path;
  }
  for (const KeyFile& list : lists) {
    if (auto path = installed(list.list("Added Associations", mimeType))) return path;
  }
  for (const std::string& folder : applications) {
    const auto cache = KeyFile::read(folder + "/mimeinfo.cache");
    if (!cache) continue;
    std::vector<std::string> files = cache->list("MIME Cache", mimeType);
    std::erase_if(files, [&](const std::string& file) {
      return std::any_of(lists.begin(), lists.end(), [&](const KeyFile& list) {
        return isAssociated(list, "Removed Associations", mimeType, file);
      });
    });
    if (auto path = installed(files)) return path;
  }
  return std::nullopt;
}

bool ApplicationLauncher::start(const std::string& entryPath, const Target& target) const {
  const auto entry = entries_.entryAt(entryPath);
  if (!entry) return false;
  if (entry->dbusActivatable && activate(entryPath, target)) return true;

  auto arguments = expandExec(*entry, entryPath, target.file, target.url);
  if (arguments && entry->terminal) arguments = inTerminal(std::move(*arguments));
  if (!arguments) return false;
  DetachedProcess process;
  process.program = entries_.environment().findProgram(arguments->front());
  if (process.program.empty()) return false;
  process.arguments = std::move(*arguments);
  process.workingDirectory = entry->workingDirectory;
  process.environment = {{"GIO_LAUNCHED_DESKTOP_FILE", entryPath}};
  process.processNumberVariable = "GIO_LAUNCHED_DESKTOP_FILE_PID";
  return process.start();
}

bool ApplicationLauncher::activate(const std::string& entryPath, const Target& target) const {
  const std::string identifier = entries_.identifierOf(entryPath);
  if (identifier.find('.') == std::string::npos) return false;
  QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return false;
  std::string path = "/" + identifier;
  std::replace(path.begin(), path.end(), '.', '/');
  std::replace(path.begin(), path.end(), '-', '_');
  QDBusMessage call =
      QDBusMessage::createMethodCall(toQString(identifier), toQString(path), "org.freedesktop.Application",
                                     target.url.empty() ? "Activate" : "Open");
  if (!target.url.empty()) call << QStringList{toQString(target.url)};
  call << QVariantMap{};
  return bus.call(call, QDBus::Block, kActivationTimeout).type() == QDBusMessage::ReplyMessage;
}

std::optional<std::vector<std::string>> ApplicationLauncher::inTerminal(
    std::vector<std::string> arguments) const {
  for (const Terminal& terminal : kTerminals) {
    if (entries_.environment().findProgram(terminal.program).empty()) continue;
    std::vector<std::string> wrapped{std::string(terminal.program)};
    if (!terminal.separator.empty()) wrapped.emplace_back(terminal.separator);
    wrapped.insert(wrapped.end(), arguments.begin(), arguments.end());
    return wrapped;
  }
  return std::nullopt;
}

}  // namespace harbor
