#include "platform/linux/BrowserPrograms.h"

#include "PrivacyFixture.h"
#include "support/ForeignLock.h"
#include "support/NamedProgram.h"

namespace harbor {
namespace {

struct BrowserPrograms : LinuxPrivacy {
  void installAs(const std::string& identifier, const std::string& program) const {
    root.makeFile("share/applications/" + identifier + ".desktop",
                  "[Desktop Entry]\nType=Application\nName=B\nExec=" + program + " %U\n");
  }
  std::optional<UsingProgram> browser(PrivacyTarget target,
                                      const std::vector<RunningApplication>& running = {}) const {
    return places.programUsing(target, "", running);
  }
};

TEST_F(BrowserPrograms, AreStartedByWhatTheirEntryNames) {
  const MacApplication& chrome = *macApplicationWithIdentifier("com.google.Chrome");
  const MacApplication& firefox = *macApplicationWithIdentifier("org.mozilla.firefox");
  EXPECT_TRUE(isStartedBy("/opt/google/chrome/chrome", "/opt/google/chrome/google-chrome", chrome));
  EXPECT_TRUE(isStartedBy("/usr/lib/firefox-esr/firefox-esr", "/usr/bin/firefox-esr", firefox));
  EXPECT_TRUE(isStartedBy("/home/ada/firefox/firefox", "/home/ada/firefox/firefox", firefox));
  EXPECT_TRUE(isStartedBy("/home/ada/firefox/firefox-bin", "/home/ada/firefox/firefox", firefox));
  EXPECT_TRUE(isStartedBy("/home/ada/bin/any-name", "/home/ada/bin/any-name", firefox));
  EXPECT_FALSE(isStartedBy("/home/ada/.cache/ms-playwright/chromium-1/chrome-linux/chrome",
                           "/opt/google/chrome/google-chrome", chrome));
  EXPECT_FALSE(isStartedBy("/tmp/chrome", "/usr/bin/google-chrome", chrome));
  EXPECT_FALSE(isStartedBy("/usr/bin/editor", "/usr/bin/google-chrome", chrome));
  EXPECT_FALSE(isStartedBy("/home/ada/other/firefox", "/home/ada/firefox/firefox", firefox));
}

TEST_F(BrowserPrograms, ThatAreInstalledAreNamedWithTheirPath) {
  const NamedProgram firefox(root.path("apps/firefox/firefox"));
  EXPECT_EQ(browser(PrivacyTarget::firefox), std::nullopt) << "nothing says that it is installed";
  installAs("firefox", root.path("apps/firefox/firefox"));
  EXPECT_EQ(browser(PrivacyTarget::firefox), (UsingProgram{"Firefox", root.path("apps/firefox/firefox")}));
  EXPECT_EQ(browser(PrivacyTarget::googleChrome), std::nullopt);
}

TEST_F(BrowserPrograms, AreNotWhatMerelyIsCalledLikeThem) {
  root.makeFile("apps/chrome/google-chrome", "#!/bin/sh\n");
  fs::permissions(root.path("apps/chrome/google-chrome"), fs::perms::owner_all);
  installAs("google-chrome", root.path("apps/chrome/google-chrome"));
  const std::string path = home + "/.cache/ms-playwright/chromium-1/chrome-linux/chrome";
  const NamedProgram tool(path);
  const std::vector<RunningApplication> running{
      {tool.process(), "com.google.Chrome", std::nullopt, "Google Chrome"}};
  EXPECT_EQ(browser(PrivacyTarget::googleChrome, running), std::nullopt);
  EXPECT_EQ(browser(PrivacyTarget::googleChrome), std::nullopt);
  // The list of applications shows one process of the two.
  const NamedProgram chrome(root.path("apps/chrome/chrome"));
  EXPECT_EQ(browser(PrivacyTarget::googleChrome, running),
            (UsingProgram{"Google Chrome", root.path("apps/chrome/chrome")}));
}

TEST_F(BrowserPrograms, CountWhereverTheyLieWhileTheyHoldALockOnAProfile) {
  makeChromeProfile(".config/google-chrome/Default");
  const std::string path = home + "/.cache/ms-playwright/chromium-1/chrome-linux/chrome";
  const NamedProgram tool(path);
  std::array<char, 256> host{};
  ASSERT_EQ(::gethostname(host.data(), host.size() - 1), 0);
  fs::create_symlink(std::string(host.data()) + "-" + tool.number(),
                     home + "/.config/google-chrome/SingletonLock");
  EXPECT_EQ(browser(PrivacyTarget::googleChrome), (UsingProgram{"Google Chrome", path}));
}

TEST_F(BrowserPrograms, OfAnotherHostAreKnownByTheFolderThatTheyHaveLocked) {
  makeChromeProfile(".config/google-chrome/Default");
  fs::create_symlink("another-host-1", home + "/.config/google-chrome/SingletonLock");
  EXPECT_EQ(browser(PrivacyTarget::googleChrome),
            (UsingProgram{"Google Chrome", home + "/.config/google-chrome"}));
}

TEST_F(BrowserPrograms, AreNotStoppedByWhatASandboxWritesOfThem) {
  makeChromeProfile(".config/google-chrome/Default");
  file(".cache/google-chrome/Default/x");
  makeChromeProfile(".var/app/com.google.Chrome/config/google-chrome/Default");
  file(".var/app/com.google.Chrome/cache/google-chrome/Default/x");
  fs::create_symlink("another-host-1",
                     home + "/.var/app/com.google.Chrome/config/google-chrome/SingletonLock");
  EXPECT_EQ(browser(PrivacyTarget::googleChrome), std::nullopt);
  Paths gone = takenOfChromeProfile(".config/google-chrome/Default");
  gone.insert(".cache/google-chrome/Default/x");
  expectTaken(&TWProtectPrivacy::clearGoogleChrome, gone);
}

TEST_F(BrowserPrograms, ThatHoldALockOfTheKernelAreNamed) {
  file(".mozilla/firefox/profiles.ini", "[Profile0]\nIsRelative=1\nPath=a\n");
  file(".mozilla/firefox/a/times.json");
  file(".mozilla/firefox/a/.parentlock", "");
  const ForeignLock lock(home + "/.mozilla/firefox/a/.parentlock", 0, 0);
  const auto program = browser(PrivacyTarget::firefox);
  ASSERT_TRUE(program);
  EXPECT_EQ(program->name, "Firefox");
  EXPECT_EQ(program->path, fs::read_symlink("/proc/self/exe").string());
}

}  // namespace
}  // namespace harbor
