#include "platform/linux/UserDirectories.h"

#include <fcntl.h>
#include <unistd.h>

#include "base/FileDescriptor.h"
#include "base/FileUrl.h"

namespace harbor {
namespace {

constexpr std::size_t kLargestFile = 64 * 1024;

struct UsualName {
  const char* purpose;
  const char* name;
};
constexpr UsualName kUsualNames[] = {
    {"DESKTOP", "Desktop"},   {"DOCUMENTS", "Documents"}, {"DOWNLOAD", "Downloads"},  {"MUSIC", "Music"},
    {"PICTURES", "Pictures"}, {"PUBLICSHARE", "Public"},  {"TEMPLATES", "Templates"}, {"VIDEOS", "Videos"}};

std::string_view trimmed(std::string_view text) {
  const std::size_t start = text.find_first_not_of(" \t\r");
  if (start == std::string_view::npos) return {};
  return text.substr(start, text.find_last_not_of(" \t\r") - start + 1);
}

// The value between double quotes with its backslashes taken out; empty when it is not quoted.
std::string unquoted(std::string_view value) {
  if (value.size() < 2 || value.front() != '"') return {};
  std::string text;
  for (std::size_t i = 1; i < value.size(); ++i) {
    if (value[i] == '"') return text;
    if (value[i] == '\\' && i + 1 < value.size()) ++i;
    text += value[i];
  }
  return {};
}

}  // namespace

UserDirectories UserDirectories::fromText(std::string_view text, const std::string& homeFolder) {
  UserDirectories directories;
  for (const UsualName& usual : kUsualNames)
    directories.folders_[usual.purpose] = homeFolder + "/" + usual.name;

  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    const std::string_view line = trimmed(text.substr(0, end));
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos || !line.starts_with("XDG_")) continue;
    const std::string_view key = trimmed(line.substr(0, equals));
    if (!key.ends_with("_DIR") || key.size() < 9) continue;
    const auto entry = directories.folders_.find(key.substr(4, key.size() - 8));
    if (entry == directories.folders_.end()) continue;

    constexpr std::string_view kHome = "$HOME";
    std::string value = unquoted(trimmed(line.substr(equals + 1)));
    if (value == kHome || value.starts_with("$HOME/")) value.replace(0, kHome.size(), homeFolder);
    if (!value.starts_with('/')) continue;
    entry->second = FileUrl::fromPath(value).path;
  }
  return directories;
}

UserDirectories UserDirectories::read(const std::string& configHome, const std::string& homeFolder) {
  std::string text;
  const FileDescriptor file(
      ::open((configHome + "/user-dirs.dirs").c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  char buffer[4096];
  while (file && text.size() < kLargestFile) {
    const ssize_t count = ::read(file.get(), buffer, sizeof buffer);
    if (count <= 0) break;
    text.append(buffer, static_cast<std::size_t>(count));
  }
  return fromText(text, homeFolder);
}

std::string UserDirectories::folder(std::string_view purpose) const {
  const auto entry = folders_.find(purpose);
  return entry == folders_.end() ? std::string() : entry->second;
}

}  // namespace harbor
