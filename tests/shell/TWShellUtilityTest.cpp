#include "privacy/shell/TWShellUtility.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <filesystem>

#include "base/FileDescriptor.h"
#include "support/AsNobody.h"
#include "support/TemporaryFolder.h"

namespace harbor {
namespace {

struct TWShellUtilityTest : testing::Test {
  TemporaryFolder root;
  TWShellUtility shell;
};

TEST_F(TWShellUtilityTest, ReturnsWhatTheCommandWrites) {
  EXPECT_EQ(shell.run("printf 'one\ntwo'").output, "one\ntwo");
}

TEST_F(TWShellUtilityTest, ACommandThatWritesNothingReturnsEmptyText) {
  const auto result = shell.run("true");
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(result.failure, TWShellUtility::Failure::none);
}

TEST_F(TWShellUtilityTest, OutputThatIsNotUtf8IsAbsent) {
  for (const char* bytes : {"\\377", "\\300\\200", "\\355\\240\\200", "\\303", "\\364\\220\\200\\200"}) {
    const auto result = shell.run(std::string("printf '") + bytes + "'");
    EXPECT_EQ(result.output, std::nullopt) << bytes;
    EXPECT_EQ(result.failure, TWShellUtility::Failure::none);
  }
  EXPECT_EQ(shell.run("printf '\\303\\251\\360\\237\\230\\200'").output, "é😀");
}

TEST_F(TWShellUtilityTest, AnExitStatusIsNotLookedAt) {
  EXPECT_EQ(shell.run("echo partial; exit 3").output, "partial\n");
  EXPECT_EQ(shell.run("no-such-command-anywhere 2>/dev/null").output, "");
}

TEST_F(TWShellUtilityTest, WildcardsAreExpandedInTheWorkingFolder) {
  root.makeFile("base.V2");
  root.makeFile("base.V3");
  root.makeFile("other");
  EXPECT_EQ(shell.run("echo base.V*", root.path()).output, "base.V2 base.V3\n");
}

TEST_F(TWShellUtilityTest, PercentCharactersAndQuotesReachTheShellUnchanged) {
  EXPECT_EQ(shell.run("echo '%@ %s %d %%'").output, "%@ %s %d %%\n");
  EXPECT_EQ(shell.run("echo 'a  b' \"c\" < /dev/null").output, "a  b c\n");
}

TEST_F(TWShellUtilityTest, WithoutAFolderTheCommandRunsInThisProcessesOwn) {
  EXPECT_EQ(shell.run("pwd -P").output, std::filesystem::current_path().string() + "\n");
}

TEST_F(TWShellUtilityTest, AWorkingFolderThatIsNotThereIsReportedAndNothingRuns) {
  const std::string trace = root.path("trace");
  root.makeFile("file");
  for (const std::string& folder :
       {root.path("none"), root.path("file"), std::string(), std::string("relative")}) {
    const auto result = shell.run("touch '" + trace + "'", folder);
    EXPECT_EQ(result.failure, TWShellUtility::Failure::noWorkingFolder) << folder;
    EXPECT_EQ(result.output, std::nullopt);
  }
  EXPECT_FALSE(std::filesystem::exists(trace));
}

TEST_F(TWShellUtilityTest, AFolderThatMayBeEnteredAndNotReadIsAWorkingFolder) {
  root.makeFile("closed/file", "text");
  root.makeFile("locked/file", "text");
  std::filesystem::permissions(root.path(), std::filesystem::perms(0755));
  std::filesystem::permissions(root.path("closed"), std::filesystem::perms(0711));
  std::filesystem::permissions(root.path("locked"), std::filesystem::perms(0744));
  const AsNobody nobody;
  EXPECT_EQ(shell.run("pwd -P; cat file", root.path("closed")).output, root.path("closed") + "\ntext");
  EXPECT_EQ(shell.run("pwd", root.path("locked")).failure, TWShellUtility::Failure::noWorkingFolder);
}

TEST_F(TWShellUtilityTest, NothingThatIsOpenHereIsOpenInTheCommand) {
  const FileDescriptor leaked(::open("/dev/null", O_RDONLY));
  ASSERT_TRUE(leaked);
  // The listing itself opens the folder that it lists.
  EXPECT_EQ(
      shell
          .run("cd /proc/self/fd && for n in *; do [ \"$n\" -gt 2 ] && [ \"$(readlink $n)\" = /dev/null ] && "
               "echo open; done; true")
          .output,
      "");
}

TEST_F(TWShellUtilityTest, TheCommandStartsWithDefaultSignals) {
  sigset_t blocked;
  sigset_t before;
  ::sigemptyset(&blocked);
  ::sigaddset(&blocked, SIGTERM);
  ::pthread_sigmask(SIG_BLOCK, &blocked, &before);
  auto* const pipeBefore = std::signal(SIGPIPE, SIG_IGN);
  const auto result = shell.run("grep -E '^Sig(Blk|Ign)' /proc/self/status | tr -d '\\t\\n'");
  std::signal(SIGPIPE, pipeBefore);
  ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
  // Two signals above the standard ones belong to the C library, which sets them itself.
  constexpr unsigned long kStandardSignals = 0x7fffffff;
  unsigned long blockedThere = 1;
  unsigned long ignoredThere = 1;
  ASSERT_EQ(std::sscanf(result.output->c_str(), "SigBlk:%16lxSigIgn:%16lx", &blockedThere, &ignoredThere), 2);
  EXPECT_EQ(blockedThere, 0u);
  EXPECT_EQ(ignoredThere & kStandardSignals, 0u);
}

TEST_F(TWShellUtilityTest, TheCommandsFolderComesFirst) {
  root.makeFile("bin/pbcopy", "#!/bin/sh\necho copied\n");
  ::chmod(root.path("bin/pbcopy").c_str(), 0755);
  EXPECT_EQ(TWShellUtility(root.path("bin")).run("pbcopy < /dev/null").output, "copied\n");
}

TEST_F(TWShellUtilityTest, LargeOutputIsReadWhole) {
  EXPECT_EQ(shell.run("head -c 1000000 /dev/zero | tr '\\0' x").output->size(), 1'000'000u);
}

TEST_F(TWShellUtilityTest, ReturnsWhenTheOutputIsClosedEvenIfTheCommandGoesOn) {
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(shell.run("echo done; exec >&-; exec sleep 3").output, "done\n");
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2));
}

}  // namespace
}  // namespace harbor
