#include "platform/linux/DesktopEntry.h"

#include <algorithm>

namespace harbor {
namespace {

constexpr std::string_view kGroup = "Desktop Entry";

// On one line, without control characters, blanks at the ends dropped: it becomes a menu title.
std::string asTitle(std::string text) {
  for (char& character : text) {
    if (static_cast<unsigned char>(character) < 0x20 || character == 0x7f) character = ' ';
  }
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string localisedName(const KeyFile& file, const XdgEnvironment& environment) {
  for (const std::string& suffix : environment.localeSuffixes()) {
    if (auto name = file.string(kGroup, "Name" + suffix)) {
      std::string title = asTitle(std::move(*name));
      if (!title.empty()) return title;
    }
  }
  return {};
}

bool sharesAny(const std::vector<std::string>& a, const std::vector<std::string>& b) {
  return std::find_first_of(a.begin(), a.end(), b.begin(), b.end()) != a.end();
}

}  // namespace

std::optional<DesktopEntry> DesktopEntry::from(const KeyFile& file, const XdgEnvironment& environment) {
  if (file.raw(kGroup, "Type") != "Application") return std::nullopt;
  const auto text = [&file](std::string_view key) {
    return file.string(kGroup, key).value_or(std::string());
  };
  DesktopEntry entry;
  entry.name = localisedName(file, environment);
  entry.untranslatedName = asTitle(text("Name"));
  entry.exec = text("Exec");
  entry.tryExec = text("TryExec");
  entry.workingDirectory = text("Path");
  entry.icon = text("Icon");
  entry.startupWmClass = text("StartupWMClass");
  entry.flatpak = text("X-Flatpak");
  entry.snap = text("X-SnapInstanceName");
  entry.limitsDesktops = file.raw(kGroup, "OnlyShowIn").has_value();
  entry.onlyShowIn = file.list(kGroup, "OnlyShowIn");
  entry.notShowIn = file.list(kGroup, "NotShowIn");
  entry.hidden = file.boolean(kGroup, "Hidden");
  entry.noDisplay = file.boolean(kGroup, "NoDisplay");
  entry.terminal = file.boolean(kGroup, "Terminal");
  entry.dbusActivatable = file.boolean(kGroup, "DBusActivatable");
  return entry;
}

std::optional<DesktopEntry> DesktopEntry::parse(std::string_view bytes, const XdgEnvironment& environment) {
  return from(KeyFile::parse(bytes), environment);
}

std::optional<DesktopEntry> DesktopEntry::read(const std::string& path, const XdgEnvironment& environment) {
  const auto file = KeyFile::read(path);
  if (!file) return std::nullopt;
  return from(*file, environment);
}

bool DesktopEntry::isOffered(const XdgEnvironment& environment) const {
  if (hidden || noDisplay || (exec.empty() && !dbusActivatable)) return false;
  if (limitsDesktops && !sharesAny(onlyShowIn, environment.currentDesktops)) return false;
  if (sharesAny(notShowIn, environment.currentDesktops)) return false;
  return tryExec.empty() || !environment.findProgram(tryExec).empty();
}

}  // namespace harbor
