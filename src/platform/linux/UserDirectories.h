// The user's own folders by purpose, as `user-dirs.dirs` names them.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace harbor {

class UserDirectories {
 public:
  // Reads `configHome`/user-dirs.dirs. A folder that the file does not name, or names in a way that is not
  // allowed (relative, without the quotes), has its usual English name below the home folder.
  static UserDirectories read(const std::string& configHome, const std::string& homeFolder);
  static UserDirectories fromText(std::string_view text, const std::string& homeFolder);

  // The absolute path for "DESKTOP", "DOCUMENTS", "DOWNLOAD", "MUSIC", "PICTURES", "PUBLICSHARE", "TEMPLATES"
  // or "VIDEOS"; empty for any other name. A folder that the user has done without is the home folder itself.
  std::string folder(std::string_view purpose) const;

  // All of them by purpose.
  const std::map<std::string, std::string, std::less<>>& folders() const { return folders_; }

 private:
  std::map<std::string, std::string, std::less<>> folders_;
};

}  // namespace harbor
