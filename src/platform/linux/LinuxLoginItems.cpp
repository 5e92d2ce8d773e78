#include "platform/linux/LinuxLoginItems.h"

#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "platform/linux/DurableFile.h"
#include "platform/linux/KeyFile.h"

namespace harbor {
namespace {

constexpr std::uint64_t kLargestEntry = 1 << 20;
constexpr std::string_view kGroup = "Desktop Entry";
constexpr std::string_view kGroupLine = "[Desktop Entry]";
// Beside Hidden=true: it was the program's switch that hid the entry, and may show it again.
constexpr std::string_view kHiddenBySwitch = "X-HarborTray-HiddenBySwitch";

// A value of a desktop entry that is a string.
std::string escaped(std::string_view text) {
  std::string result;
  for (const char character : text) {
    if (character == '\\') result += '\\';
    result += character;
  }
  return result;
}

// One argument of a command line, quoted whatever it holds, and escaped once more as a value.
std::string quoted(std::string_view argument) {
  std::string result = "\"";
  for (const char character : argument) {
    if (std::string_view("\"`$\\").find(character) != std::string_view::npos) result += '\\';
    if (character == '%') result += '%';
    result += character;
  }
  return escaped(result + '"');
}

bool isExecutable(const std::string& path) {
  return access(path.c_str(), X_OK) == 0;
}

std::vector<std::string> linesOf(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    lines.emplace_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

// The text with the key of its main group set to the value; with none, without the key. Everything else stays
// as it is, to the byte.
std::string withKey(std::string_view text, std::string_view key, std::optional<std::string_view> value) {
  std::string result;
  bool isInGroup = false;
  for (const std::string& line : linesOf(text)) {
    const std::string_view content = std::string_view(line).substr(0, line.find_last_not_of(" \t\r") + 1);
    if (content.starts_with('[')) isInGroup = content == kGroupLine;
    const std::string_view name = content.substr(0, content.find('='));
    const bool isKey =
        isInGroup && name.size() < content.size() && name.substr(0, name.find_last_not_of(" \t") + 1) == key;
    if (isKey) continue;
    result += line + '\n';
    if (value && isInGroup && content == kGroupLine)
      result += std::string(key) + '=' + std::string(*value) + '\n';
  }
  return result;
}

bool store(const std::string& path, const std::string& text) {
  return DurableFile(path).replace(Data(text.begin(), text.end()));
}

}  // namespace

LinuxLoginItems::LinuxLoginItems(std::string configHome, Programs programs,
                                 std::function<void()> whenForbidden)
    : configHome_(std::move(configHome)),
      programs_(std::move(programs)),
      whenForbidden_(std::move(whenForbidden)) {}

bool LinuxLoginItems::setEnabled(std::string_view bundleIdentifier, State state) {
  if (configHome_.empty()) return false;
  const std::string path = entryPath(bundleIdentifier);
  return state == State::enabled ? enable(path) : disable(path);
}

std::string LinuxLoginItems::entryPath(std::string_view bundleIdentifier) const {
  return configHome_ + "/autostart/" + std::string(bundleIdentifier) + ".desktop";
}

std::string LinuxLoginItems::newEntry() const {
  return std::string(kGroupLine) +
         "\n"
         "Type=Application\n"
         "Name=Harbor Tray\n"
         "Comment=Starts Harbor Tray at login\n"
         "Icon=com.tidewell.HarborTray\n"
         "TryExec=" +
         escaped(programs_.launcher) + "\nExec=" + quoted(programs_.launcher) + ' ' +
         quoted(programs_.program) +
         "\nTerminal=false\n"
         "StartupNotify=false\n";
}

bool LinuxLoginItems::enable(const std::string& path) const {
  if (!isExecutable(programs_.launcher) || !isExecutable(programs_.program)) return false;
  const auto contents = DurableFile(path).read(kLargestEntry);
  if (contents.result == DurableFile::ReadResult::missing) return store(path, newEntry());
  if (contents.result != DurableFile::ReadResult::complete) return false;

  const std::string before(contents.bytes.begin(), contents.bytes.end());
  std::string text = before;
  KeyFile file = KeyFile::parse(text);
  if (!file.hasGroup(kGroup)) return store(path, newEntry());
  if (file.boolean(kGroup, kHiddenBySwitch)) {
    text = withKey(withKey(text, kHiddenBySwitch, std::nullopt), "Hidden", std::nullopt);
    file = KeyFile::parse(text);
  }
  const auto gnomeEnabled = file.raw(kGroup, "X-GNOME-Autostart-enabled");
  if (file.boolean(kGroup, "Hidden") || gnomeEnabled == "false") {
    whenForbidden_();
    return false;
  }
  // An entry of a program that has moved since would start nothing.
  const auto tryExec = file.string(kGroup, "TryExec");
  if (tryExec && !isExecutable(*tryExec)) {
    text = withKey(text, "TryExec", escaped(programs_.launcher));
    text = withKey(text, "Exec", quoted(programs_.launcher) + ' ' + quoted(programs_.program));
  }
  return text == before || store(path, text);
}

bool LinuxLoginItems::disable(const std::string& path) const {
  const auto contents = DurableFile(path).read(kLargestEntry);
  if (contents.result == DurableFile::ReadResult::missing) return true;
  if (contents.result != DurableFile::ReadResult::complete) return false;

  const std::string text(contents.bytes.begin(), contents.bytes.end());
  const KeyFile file = KeyFile::parse(text);
  if (!file.hasGroup(kGroup) || text == newEntry()) return unlink(path.c_str()) == 0;
  if (file.boolean(kGroup, "Hidden")) return true;
  return store(path, withKey(withKey(text, kHiddenBySwitch, "true"), "Hidden", "true"));
}

}  // namespace harbor
