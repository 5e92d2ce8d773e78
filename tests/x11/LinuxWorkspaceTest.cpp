// The session with windows of another program and window managers' properties that a test sets.

#include "platform/linux/LinuxWorkspace.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "EventLoop.h"
#include "support/TemporaryFolder.h"

namespace harbor {
namespace {

using namespace std::chrono_literals;

class LinuxWorkspaceTest : public testing::Test {
 protected:
  LinuxWorkspaceTest() {
    environment.dataHome = folder.path("home");
    environment.searchPath = {"/usr/local/bin", "/usr/bin", "/bin"};
  }
  ~LinuxWorkspaceTest() override {
    setRoot("_NET_CLIENT_LIST", {});
    setRoot("_NET_ACTIVE_WINDOW", {0});
  }

  std::string addEntry(const std::string& identifier, const std::string& exec, const std::string& keys = {}) {
    return folder.makeFile("home/applications/" + identifier + ".desktop",
                           "[Desktop Entry]\nType=Application\nName=Name of " + identifier +
                               "\nExec=" + exec + "\n" + keys + "\n");
  }

  xcb_window_t makeWindow(const std::string& names = {}) {
    const xcb_window_t window = xcb_generate_id(x->get());
    xcb_create_window(x->get(), XCB_COPY_FROM_PARENT, window, x->root(), 0, 0, 10, 10, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    if (!names.empty()) {
      xcb_change_property(x->get(), XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                          static_cast<std::uint32_t>(names.size()), names.data());
    }
    xcb_map_window(x->get(), window);
    return window;
  }

  void set(xcb_window_t window, const char* name, xcb_atom_t type, std::vector<std::uint32_t> words) {
    xcb_change_property(x->get(), XCB_PROP_MODE_REPLACE, window, x->atom(name), type, 32,
                        static_cast<std::uint32_t>(words.size()), words.data());
    // A round trip: the property is there when this returns.
    x->word(window, x->atom(name));
  }
  void setRoot(const char* name, std::vector<std::uint32_t> windows) {
    set(x->root(), name, XCB_ATOM_WINDOW, std::move(windows));
  }

  TemporaryFolder folder;
  XdgEnvironment environment;
  std::unique_ptr<XcbConnection> x = XcbConnection::open();
};

TEST_F(LinuxWorkspaceTest, NothingIsInFrontWithoutAnActiveWindow) {
  const DesktopEntries entries(environment, 0ms);
  const LinuxWorkspace workspace(entries);
  EXPECT_FALSE(workspace.frontmostApplication());
  setRoot("_NET_ACTIVE_WINDOW", {0x7ffffff});
  EXPECT_FALSE(workspace.frontmostApplication());
}

TEST_F(LinuxWorkspaceTest, AWindowWithoutAnEntryIsItsProgramFile) {
  const DesktopEntries entries(environment, 0ms);
  const LinuxWorkspace workspace(entries);
  setRoot("_NET_ACTIVE_WINDOW", {makeWindow()});
  const auto front = workspace.frontmostApplication();
  ASSERT_TRUE(front);
  EXPECT_EQ(front->processIdentifier, getpid());
  EXPECT_EQ(front->bundleUrl, (FileUrl{std::filesystem::read_symlink("/proc/self/exe").string(), false}));
  EXPECT_EQ(front->bundleIdentifier, std::nullopt);
}

TEST_F(LinuxWorkspaceTest, AnEntryIsFoundByProgramAndBetterByWindowClass) {
  const std::string program = std::filesystem::read_symlink("/proc/self/exe").string();
  const std::string byProgram = addEntry("by-program", program);
  const std::string byClass = addEntry("org.example.Class", "sh", "StartupWMClass=Test-Class");
  const DesktopEntries entries(environment, 0ms);
  const LinuxWorkspace workspace(entries);
  setRoot("_NET_ACTIVE_WINDOW", {makeWindow()});
  auto front = workspace.frontmostApplication();
  ASSERT_TRUE(front);
  EXPECT_EQ(front->bundleUrl, (FileUrl{byProgram, false}));
  EXPECT_EQ(front->name, "Name of by-program");
  EXPECT_EQ(front->bundleIdentifier, "by-program");
  setRoot("_NET_ACTIVE_WINDOW", {makeWindow(std::string("test\0Test-Class\0", 16))});
  front = workspace.frontmostApplication();
  ASSERT_TRUE(front);
  EXPECT_EQ(front->bundleUrl, (FileUrl{byClass, false}));
}

TEST_F(LinuxWorkspaceTest, AMacIdentifierStandsForItsCounterpart) {
  const std::string firefox = addEntry("firefox-esr", "nonexistent-browser", "StartupWMClass=Nav");
  const DesktopEntries entries(environment, 0ms);
  const LinuxWorkspace workspace(entries);
  EXPECT_FALSE(workspace.isRunning("org.mozilla.firefox"));
  setRoot("_NET_CLIENT_LIST", {makeWindow(std::string("x\0Nav\0", 6))});
  EXPECT_TRUE(workspace.isRunning("org.mozilla.firefox"));
  EXPECT_TRUE(workspace.isRunning("firefox-esr"));
  EXPECT_FALSE(workspace.isRunning("com.apple.Safari"));
  EXPECT_EQ(workspace.fullPathForApplication("Firefox"), firefox);
  EXPECT_EQ(workspace.fullPathForApplication("Safari"), std::nullopt);
}

TEST_F(LinuxWorkspaceTest, ProgramsWithoutWindowsRunToo) {
  // A program of the test's own: others on the machine may be running theirs.
  const std::string program = folder.path("harbor-sleeper");
  std::filesystem::copy_file("/bin/sleep", program);
  addEntry("sleeper", program + " 1000");
  const DesktopEntries entries(environment, 0ms);
  const LinuxWorkspace workspace(entries);
  ASSERT_FALSE(workspace.isRunning("sleeper"));
  const pid_t child = fork();
  if (child == 0) {
    execl(program.c_str(), program.c_str(), "1000", static_cast<char*>(nullptr));
    _exit(127);
  }
  EXPECT_TRUE(waitUntil([&] { return workspace.isRunning("sleeper"); }));
  const auto running = workspace.runningApplication(child);
  ASSERT_TRUE(running);
  EXPECT_EQ(running->activationPolicy, ActivationPolicy::accessory);
  kill(child, SIGKILL);
  EXPECT_TRUE(waitUntil([&] { return !workspace.runningApplication(child); }));
  waitpid(child, nullptr, 0);
}

TEST_F(LinuxWorkspaceTest, ARegularApplicationHasAnOrdinaryWindow) {
  const DesktopEntries entries(environment, 0ms);
  const LinuxWorkspace workspace(entries);
  const xcb_window_t window = makeWindow();
  setRoot("_NET_CLIENT_LIST", {window});
  setRoot("_NET_ACTIVE_WINDOW", {window});
  const auto policy = [&] { return workspace.frontmostApplication()->activationPolicy; };
  EXPECT_EQ(policy(), ActivationPolicy::regular);
  for (const char* state :
       {"_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_ABOVE", "_NET_WM_STATE_BELOW", "_NET_WM_STATE_HIDDEN"}) {
    set(window, "_NET_WM_STATE", XCB_ATOM_ATOM, {x->atom(state)});
    EXPECT_EQ(policy(), ActivationPolicy::accessory) << state;
  }
  set(window, "_NET_WM_STATE", XCB_ATOM_ATOM, {});
  for (const char* type :
       {"_NET_WM_WINDOW_TYPE_NORMAL", "_NET_WM_WINDOW_TYPE_DIALOG", "_NET_WM_WINDOW_TYPE_UTILITY"}) {
    set(window, "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM, {x->atom(type)});
    EXPECT_EQ(policy(), ActivationPolicy::regular) << type;
  }
  for (const char* type : {"_NET_WM_WINDOW_TYPE_DOCK", "_NET_WM_WINDOW_TYPE_DESKTOP"}) {
    set(window, "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM, {x->atom(type)});
    EXPECT_EQ(policy(), ActivationPolicy::accessory) << type;
  }
  set(window, "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM, {});
  set(x->root(), "_NET_CURRENT_DESKTOP", XCB_ATOM_CARDINAL, {1});
  set(window, "_NET_WM_DESKTOP", XCB_ATOM_CARDINAL, {0});
  EXPECT_EQ(policy(), ActivationPolicy::accessory);
  set(window, "_NET_WM_DESKTOP", XCB_ATOM_CARDINAL, {0xFFFFFFFF});
  EXPECT_EQ(policy(), ActivationPolicy::regular);
}

TEST_F(LinuxWorkspaceTest, AnotherSpaceAndAnotherWallpaperAreReported) {
  const DesktopEntries entries(environment, 0ms);
  LinuxWorkspace workspace(entries);
  int changes = 0;
  Subscription subscription = workspace.onActiveSpaceDidChange([&] { ++changes; });
  set(x->root(), "_NET_CURRENT_DESKTOP", XCB_ATOM_CARDINAL, {2});
  EXPECT_TRUE(waitUntil([&] { return changes == 1; }));
  set(x->root(), "_XROOTPMAP_ID", XCB_ATOM_PIXMAP, {1});
  EXPECT_TRUE(waitUntil([&] { return changes == 2; }));
  subscription.reset();
  set(x->root(), "_NET_CURRENT_DESKTOP", XCB_ATOM_CARDINAL, {3});
  runFor(50ms);
  EXPECT_EQ(changes, 2);
}

}  // namespace
}  // namespace harbor
