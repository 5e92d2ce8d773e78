#include "platform/linux/BrowserLocks.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <csignal>
#include <filesystem>

#include "support/ForeignLock.h"
#include "support/NamedProgram.h"
#include "support/TemporaryFolder.h"

namespace harbor {
namespace {

namespace fs = std::filesystem;

std::string hostName() {
  std::array<char, HOST_NAME_MAX + 1> name{};
  gethostname(name.data(), name.size() - 1);
  return name.data();
}

// The number of a process that has ended.
std::string deadProcess() {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(0);
  ::waitpid(child, nullptr, 0);
  return std::to_string(child);
}

struct BrowserLocks : testing::Test {
  void chromeLock(const std::string& text) const {
    folder.remove("chrome/SingletonLock");
    fs::create_symlink(text, chrome + "/SingletonLock");
  }
  void firefoxLock(const std::string& text) const {
    folder.remove("profile/lock");
    fs::create_symlink(text, profile + "/lock");
  }

  TemporaryFolder folder;
  std::string chrome = folder.makeFolder("chrome");
  std::string profile = folder.makeFolder("profile");
};

TEST_F(BrowserLocks, NothingIsInUseWithoutALock) {
  EXPECT_FALSE(lockOfFirefox(profile));
  EXPECT_FALSE(lockOfFirefox(folder.path("missing")));
  EXPECT_FALSE(lockOfChrome(chrome, ""));
  EXPECT_FALSE(lockOfChrome(folder.path("missing"), ""));
}

TEST_F(BrowserLocks, AFirefoxProfileIsInUseWhileItsRecordLockIsHeld) {
  const std::string lock = folder.makeFile("profile/.parentlock");
  EXPECT_FALSE(lockOfFirefox(profile));
  {
    const ForeignLock firefox(lock, 0, 0);
    EXPECT_TRUE(lockOfFirefox(profile));
  }
  EXPECT_FALSE(lockOfFirefox(profile));
}

TEST_F(BrowserLocks, AFirefoxLinkThatSpeaksOfAReleasedRecordLockIsStale) {
  folder.makeFile("profile/.parentlock");
  const NamedProgram firefox(folder.path("firefox-esr"));
  firefoxLock("127.0.0.1:+" + firefox.number());
  EXPECT_FALSE(lockOfFirefox(profile));
}

TEST_F(BrowserLocks, AFirefoxLinkWithoutARecordLockIsJudgedByAddressAndProcess) {
  {
    const NamedProgram firefox(folder.path("firefox-esr"));
    firefoxLock("127.0.0.1:" + firefox.number());
    EXPECT_TRUE(lockOfFirefox(profile));
    const NamedProgram other(folder.path("editor"));
    firefoxLock("127.0.0.1:" + other.number());
    EXPECT_FALSE(lockOfFirefox(profile)) << "the number belongs to another program by now";
  }
  firefoxLock("127.0.1.1:" + deadProcess());
  EXPECT_FALSE(lockOfFirefox(profile));
  firefoxLock("192.0.2.77:" + deadProcess());
  EXPECT_TRUE(lockOfFirefox(profile)) << "nothing can be told of a process elsewhere";
  for (const char* text : {"nonsense", ":", "127.0.0.1:", "127.0.0.1:x", "127.0.0.1:-1", "127.0.0.1:1x"}) {
    firefoxLock(text);
    EXPECT_FALSE(lockOfFirefox(profile)) << text;
  }
}

TEST_F(BrowserLocks, AFifoInPlaceOfARecordLockHoldsNothingUp) {
  ASSERT_EQ(::mkfifo((profile + "/.parentlock").c_str(), 0600), 0);
  EXPECT_FALSE(lockOfFirefox(profile));
}

TEST_F(BrowserLocks, AChromeFolderIsInUseWhileTheProcessThatItsLinkNamesRuns) {
  {
    const NamedProgram chromium(folder.path("chromium"));
    chromeLock(hostName() + "-" + chromium.number());
    EXPECT_TRUE(lockOfChrome(chrome, ""));
    const NamedProgram other(folder.path("editor"));
    chromeLock(hostName() + "-" + other.number());
    EXPECT_FALSE(lockOfChrome(chrome, "")) << "the number belongs to another program by now";
  }
  chromeLock(hostName() + "-" + deadProcess());
  EXPECT_FALSE(lockOfChrome(chrome, ""));
}

TEST_F(BrowserLocks, AChromeLinkOfAnotherHostCounts) {
  chromeLock("no-such-host-here-" + deadProcess());
  EXPECT_TRUE(lockOfChrome(chrome, ""));
  for (const char* text : {"nonsense", "-", "host-", "host-x", "host-0"}) {
    chromeLock(text);
    EXPECT_FALSE(lockOfChrome(chrome, "")) << text;
  }
}

}  // namespace
}  // namespace harbor
