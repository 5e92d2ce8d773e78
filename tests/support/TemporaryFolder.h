// A folder of a test's own, gone with the test.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

namespace harbor {

class TemporaryFolder {
 public:
  explicit TemporaryFolder(const std::filesystem::path& above = std::filesystem::temp_directory_path()) {
    std::string name = (above / "harbor-test-XXXXXX").string();
    if (!mkdtemp(name.data())) throw std::runtime_error("no temporary folder");
    path_ = name;
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code error;
    std::filesystem::remove_all(path_, error);
  }

  const std::string& path() const { return path_; }
  std::string path(const std::string& relative) const { return path_ + "/" + relative; }

  // Makes the folder with those above it; returns its path.
  std::string makeFolder(const std::string& relative) const {
    std::filesystem::create_directories(path(relative));
    return path(relative);
  }

  // Makes the file with the folders above it; returns its path.
  std::string makeFile(const std::string& relative, const std::string& contents = {}) const {
    std::filesystem::create_directories(std::filesystem::path(path(relative)).parent_path());
    std::ofstream(path(relative), std::ios::binary) << contents;
    return path(relative);
  }

  void remove(const std::string& relative) const { std::filesystem::remove_all(path(relative)); }

 private:
  std::string path_;
};

}  // namespace harbor
