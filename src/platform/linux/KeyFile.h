// The line format that desktop entries, MIME associations and Flatpak's information share: groups of keys.
// Any bytes can be read; what is not a group or a key is left out.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace harbor {

class KeyFile {
 public:
  // Groups of the same name are one; of a key that stands twice the last counts.
  static KeyFile parse(std::string_view bytes);

  // The file's contents; nothing when it cannot be read, is no regular file or is longer than 1 MiB.
  static std::optional<KeyFile> read(const std::string& path);
  // The same of a file directly in an open folder; nothing if it is a link.
  static std::optional<KeyFile> readIn(int folder, const char* name);

  // The names of all groups, sorted.
  std::vector<std::string> groups() const;
  bool hasGroup(std::string_view group) const { return groups_.find(group) != groups_.end(); }

  // The value as it stands, escapes included.
  std::optional<std::string_view> raw(std::string_view group, std::string_view key) const;
  // The value with its escapes resolved; nothing when it is not valid UTF-8 or holds a zero byte.
  std::optional<std::string> string(std::string_view group, std::string_view key) const;
  bool boolean(std::string_view group, std::string_view key) const;
  // The parts of a value that semicolons separate, empty ones left out.
  std::vector<std::string> list(std::string_view group, std::string_view key) const;

 private:
  std::map<std::string, std::map<std::string, std::string, std::less<>>, std::less<>> groups_;
};

}  // namespace harbor
