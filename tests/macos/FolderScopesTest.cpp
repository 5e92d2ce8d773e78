#include "platform/macos/FolderScopes.h"

#include <gtest/gtest.h>

#include <vector>

namespace harbor {
namespace {

struct FolderScopesTest : testing::Test {
  bool open(const std::string& folder) {
    return scopes.open(folder, [this](int scope) {
      opened.push_back(scope);
      return allows;
    });
  }
  FolderScopes<int> scopes;
  std::vector<int> opened;
  bool allows = true;
};

TEST_F(FolderScopesTest, AccessIsOpenedOnceHoweverOftenAFolderIsResolved) {
  for (int scope = 1; scope <= 3; ++scope) {
    scopes.keep("/Users/ada", scope);
    EXPECT_TRUE(open("/Users/ada"));
  }
  EXPECT_EQ(opened, std::vector<int>{1});
}

TEST_F(FolderScopesTest, TheLastObjectThatWasResolvedIsTheOneThatIsOpened) {
  scopes.keep("/Users/ada", 1);
  scopes.keep("/Users/ada", 2);
  EXPECT_TRUE(open("/Users/ada"));
  EXPECT_EQ(opened, std::vector<int>{2});
}

TEST_F(FolderScopesTest, WhatWasRefusedIsTriedAgainOnTheNextObject) {
  allows = false;
  scopes.keep("/Users/ada", 1);
  EXPECT_FALSE(open("/Users/ada"));
  allows = true;
  scopes.keep("/Users/ada", 2);
  EXPECT_TRUE(open("/Users/ada"));
  EXPECT_EQ(opened, (std::vector<int>{1, 2}));
}

TEST_F(FolderScopesTest, AFolderThatWasNotResolvedStaysClosed) {
  scopes.keep("/Users/ada", 1);
  EXPECT_FALSE(open("/Users"));
  EXPECT_TRUE(opened.empty());
}

}  // namespace
}  // namespace harbor
