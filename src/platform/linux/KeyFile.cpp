#include "platform/linux/KeyFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/Utf8.h"

#include "base/FileDescriptor.h"

namespace harbor {
namespace {

constexpr std::size_t kMaximumFileSize = 1 << 20;

// A named pipe in place of a file must not hold up the reader.
constexpr int kReading = O_RDONLY | O_CLOEXEC | O_NONBLOCK;

std::optional<std::string> contentsOf(const FileDescriptor& file) {
  struct stat status;
  if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode) ||
      static_cast<std::size_t>(status.st_size) > kMaximumFileSize)
    return std::nullopt;
  std::string bytes(static_cast<std::size_t>(status.st_size), '\0');
  std::size_t length = 0;
  while (length < bytes.size()) {
    const ssize_t count = ::read(file.get(), bytes.data() + length, bytes.size() - length);
    if (count <= 0) break;
    length += static_cast<std::size_t>(count);
  }
  bytes.resize(length);
  return bytes;
}

std::string_view trimmedBlanks(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t\r");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

bool isText(std::string_view bytes) {
  return bytes.find('\0') == std::string_view::npos && isValidUtf8(bytes);
}

// The character that an escape stands for; an unknown one stands for itself, backslash included.
void appendEscaped(std::string& text, char escape) {
  switch (escape) {
    case 's':
      text += ' ';
      return;
    case 'n':
      text += '\n';
      return;
    case 't':
      text += '\t';
      return;
    case 'r':
      text += '\r';
      return;
    case '\\':
      text += '\\';
      return;
    default:
      text += '\\';
      text += escape;
  }
}

}  // namespace

KeyFile KeyFile::parse(std::string_view bytes) {
  KeyFile file;
  std::map<std::string, std::string, std::less<>>* group = nullptr;
  while (!bytes.empty()) {
    const std::size_t end = bytes.find('\n');
    const std::string_view line = trimmedBlanks(bytes.substr(0, end));
    bytes.remove_prefix(end == std::string_view::npos ? bytes.size() : end + 1);
    if (line.empty() || line.front() == '#') continue;
    if (line.front() == '[') {
      group = line.back() == ']' ? &file.groups_[std::string(line.substr(1, line.size() - 2))] : nullptr;
      continue;
    }
    const std::size_t equals = line.find('=');
    if (!group || equals == std::string_view::npos) continue;
    const std::string_view key = trimmedBlanks(line.substr(0, equals));
    if (!key.empty()) (*group)[std::string(key)] = trimmedBlanks(line.substr(equals + 1));
  }
  return file;
}

std::optional<KeyFile> KeyFile::read(const std::string& path) {
  const auto bytes = contentsOf(FileDescriptor(::open(path.c_str(), kReading)));
  return bytes ? std::optional(parse(*bytes)) : std::nullopt;
}

std::optional<KeyFile> KeyFile::readIn(int folder, const char* name) {
  const auto bytes = contentsOf(FileDescriptor(::openat(folder, name, kReading | O_NOFOLLOW)));
  return bytes ? std::optional(parse(*bytes)) : std::nullopt;
}

std::vector<std::string> KeyFile::groups() const {
  std::vector<std::string> names;
  for (const auto& group : groups_)
    names.push_back(group.first);
  return names;
}

std::optional<std::string_view> KeyFile::raw(std::string_view group, std::string_view key) const {
  const auto keys = groups_.find(group);
  if (keys == groups_.end()) return std::nullopt;
  const auto value = keys->second.find(key);
  if (value == keys->second.end()) return std::nullopt;
  return value->second;
}

std::optional<std::string> KeyFile::string(std::string_view group, std::string_view key) const {
  const auto value = raw(group, key);
  if (!value || !isText(*value)) return std::nullopt;
  std::string text;
  for (std::size_t i = 0; i < value->size(); ++i) {
    if ((*value)[i] == '\\' && i + 1 < value->size()) {
      appendEscaped(text, (*value)[++i]);
    } else {
      text += (*value)[i];
    }
  }
  return text;
}

bool KeyFile::boolean(std::string_view group, std::string_view key) const {
  const auto value = raw(group, key);
  return value && (*value == "true" || *value == "1");
}

std::vector<std::string> KeyFile::list(std::string_view group, std::string_view key) const {
  const auto value = raw(group, key);
  if (!value || !isText(*value)) return {};
  std::vector<std::string> parts(1);
  for (std::size_t i = 0; i < value->size(); ++i) {
    const char character = (*value)[i];
    if (character == '\\' && i + 1 < value->size()) {
      const char escape = (*value)[++i];
      if (escape == ';') {
        parts.back() += ';';
      } else {
        appendEscaped(parts.back(), escape);
      }
    } else if (character == ';') {
      parts.emplace_back();
    } else {
      parts.back() += character;
    }
  }
  std::erase(parts, "");
  return parts;
}

}  // namespace harbor
