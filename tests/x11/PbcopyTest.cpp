// The command that the shell finds as pbcopy, beside another program that owns the clipboard.

#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>

#include <QClipboard>
#include <QGuiApplication>
#include <cstdlib>
#include <string>

#include "EventLoop.h"
#include "SelectionOwner.h"

namespace harbor {
namespace {

// The status of a shell command in which $pbcopy is the program.
int run(const std::string& command) {
  const int status = std::system(("pbcopy='" HARBOR_PBCOPY "'; " + command).c_str());
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

bool ownsSoon(const SelectionOwner& owner, bool expected) {
  return waitUntil([&] { return owner.isOwner() == expected; });
}

std::string clipboardText() {
  return QGuiApplication::clipboard()->text().toStdString();
}

struct PbcopyTest : testing::Test {
  // What a command leaves behind becomes a child of the tests.
  PbcopyTest() { prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0); }
  ~PbcopyTest() override {
    owner.own();
    for (; servers > 0; --servers)
      EXPECT_TRUE(aServerEnds());
    prctl(PR_SET_CHILD_SUBREAPER, 0, 0, 0, 0);
  }

  int copy(const std::string& command) {
    ++servers;
    return run(command);
  }

  static bool aServerEnds() {
    return waitUntil([] { return waitpid(-1, nullptr, WNOHANG) > 0; });
  }

  int servers = 0;  // that texts were given to and that have not been seen to end
  SelectionOwner owner;
};

TEST_F(PbcopyTest, EmptiesTheClipboardOfAnotherProgramWhenThereIsNoInput) {
  owner.offer("UTF8_STRING", "secret");
  owner.own();
  ASSERT_TRUE(ownsSoon(owner, true));
  EXPECT_EQ(run("\"$pbcopy\" < /dev/null"), 0);
  EXPECT_TRUE(ownsSoon(owner, false));
  EXPECT_TRUE(waitUntil([] { return clipboardText().empty(); }));
}

TEST_F(PbcopyTest, ServesItsInputAfterItHasEnded) {
  EXPECT_EQ(copy("printf 'gr\\303\\274\\303\\237e\\nand more' | \"$pbcopy\""), 0);
  EXPECT_TRUE(waitUntil([] { return clipboardText() == "gr\u00fc\u00dfe\nand more"; })) << clipboardText();
}

TEST_F(PbcopyTest, KeepsNobodyWaitingForItsOutput) {
  EXPECT_EQ(copy("[ -z \"$(printf text | \"$pbcopy\")\" ]"), 0);
  EXPECT_TRUE(waitUntil([] { return clipboardText() == "text"; }));
}

TEST_F(PbcopyTest, LeavesNoProcessWhenAnotherProgramCopies) {
  ASSERT_EQ(copy("printf text | \"$pbcopy\""), 0);
  ASSERT_TRUE(waitUntil([] { return clipboardText() == "text"; }));
  owner.offer("UTF8_STRING", "newer");
  owner.own();
  ASSERT_TRUE(aServerEnds());
  --servers;
  EXPECT_TRUE(ownsSoon(owner, true));
}

TEST_F(PbcopyTest, ReplacesItsOwnEarlierText) {
  ASSERT_EQ(copy("printf first | \"$pbcopy\""), 0);
  ASSERT_EQ(copy("printf second | \"$pbcopy\""), 0);
  EXPECT_TRUE(waitUntil([] { return clipboardText() == "second"; }));
  ASSERT_EQ(run("\"$pbcopy\" < /dev/null"), 0);
  EXPECT_TRUE(waitUntil([] { return clipboardText().empty(); }));
}

TEST_F(PbcopyTest, LeavesTheClipboardAloneWhenItFails) {
  owner.offer("UTF8_STRING", "kept");
  owner.own();
  ASSERT_TRUE(ownsSoon(owner, true));
  EXPECT_EQ(run("head -c 20000000 /dev/zero | \"$pbcopy\" 2> /dev/null"), 1) << "too long";
  EXPECT_EQ(run("DISPLAY= \"$pbcopy\" < /dev/null 2> /dev/null"), 1) << "no X server";
  EXPECT_TRUE(owner.isOwner());
}

}  // namespace
}  // namespace harbor
