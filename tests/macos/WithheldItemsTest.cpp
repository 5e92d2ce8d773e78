#include "platform/macos/WithheldItems.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <map>

#include "support/TemporaryFolder.h"

namespace harbor {
namespace {

bool isWithheld(const std::vector<std::pair<std::string, int>>& items) {
  std::vector<std::string> paths;
  std::map<std::string, int> errors;
  for (const auto& [path, error] : items) {
    paths.push_back(path);
    errors[path] = error;
  }
  return isFirstItemWithheld(paths, [&](const std::string& path) { return errors.at(path); });
}

TEST(WithheldItems, TheFirstItemThatIsThereDecides) {
  EXPECT_TRUE(isWithheld({{"/a", EPERM}}));
  EXPECT_TRUE(isWithheld({{"/a", ENOENT}, {"/b/c", ENOTDIR}, {"/d", EPERM}, {"/e", 0}}));
  EXPECT_FALSE(isWithheld({{"/a", 0}, {"/b", EPERM}}));
  EXPECT_FALSE(isWithheld({{"/a", ENOENT}}));
  EXPECT_FALSE(isWithheld({}));
}

TEST(WithheldItems, WhatItsPermissionsCloseIsNotWithheld) {
  EXPECT_FALSE(isWithheld({{"/a", EACCES}, {"/b", EPERM}}));
  EXPECT_FALSE(isWithheld({{"/a", ELOOP}}));
}

TEST(WithheldItems, OpensFilesAndFoldersAndSaysWhatIsMissing) {
  TemporaryFolder root;
  EXPECT_EQ(openError(root.makeFile("file")), 0);
  EXPECT_EQ(openError(root.path()), 0);
  EXPECT_EQ(openError(root.path("none")), ENOENT);
  EXPECT_EQ(openError(root.path("file") + "/below"), ENOTDIR);
}

}  // namespace
}  // namespace harbor
