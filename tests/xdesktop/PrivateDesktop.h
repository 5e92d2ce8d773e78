// A virtual X server of a test's own with the programs that the test starts on it, all gone at its end; and
// another program's windows there.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/linux/XDesktop.h"
#include "platform/linux/XcbConnection.h"
#include "support/TemporaryFolder.h"

namespace harbor {

// Handles events until the condition holds; false after the time limit.
bool waitUntil(const std::function<bool()>& condition,
               std::chrono::milliseconds limit = std::chrono::seconds(10));
// Handles events for that long.
void waitFor(std::chrono::milliseconds time);

struct Pixel {
  int red = 0;
  int green = 0;
  int blue = 0;
  friend bool operator==(const Pixel&, const Pixel&) = default;
};
std::ostream& operator<<(std::ostream& stream, const Pixel& pixel);

// Whether the channels differ by at most one step of rounding.
bool isNearly(const Pixel& a, const Pixel& b, int steps = 1);
// The colour over the pixel, at that alpha.
Pixel blended(const Pixel& below, const Pixel& colour, double alpha);

class PrivateDesktop {
 public:
  explicit PrivateDesktop(int width = 800, int height = 600);
  ~PrivateDesktop();
  PrivateDesktop(const PrivateDesktop&) = delete;
  PrivateDesktop& operator=(const PrivateDesktop&) = delete;

  // Whether the server answers; everything else needs that.
  bool isUp() const { return observer_ != nullptr; }
  const std::string& display() const { return display_; }
  std::string home() const { return home_.path(); }

  // Starts a program, found in PATH, in a process group of its own and returns its id.
  pid_t start(const std::vector<std::string>& command);
  // Starts a window manager and waits until it manages.
  bool startWindowManager(const std::vector<std::string>& command);
  // Starts a compositing manager, waits until it owns the screen and returns its id; nothing when it does
  // not.
  std::optional<pid_t> startCompositor();
  void kill(pid_t group, int signal);
  // Runs a program to its end and returns what it printed.
  std::string run(const std::vector<std::string>& command);

  // The connection of the test itself, which plays the other programs.
  XcbConnection& observer() { return *observer_; }
  Pixel pixel(int x, int y);
  // Waits until the pixel is nearly of that colour.
  bool showsPixel(int x, int y, const Pixel& expected, int steps = 1);
  // Keeps the screen as a PNG below the build folder, for people to look at.
  void keepScreenshot(const std::string& name);

  struct WindowOptions {
    std::string title = {};
    std::string type = {};                 // "DOCK"; empty for none
    std::vector<std::string> states = {};  // "ABOVE", "FULLSCREEN"
    bool isOverrideRedirect = false;
    std::string program = {};                // the instance part of its class; empty for no class
    std::vector<std::string> rawTypes = {};  // whole names of types, in place of `type`
    // What it claims as its process: its own, none, or that number.
    enum class Claim { own, none, number } claim = Claim::own;
    std::uint32_t claimed = 0;
  };
  // Another program's window, mapped; the call returns when it is viewable.
  xcb_window_t makeWindow(const PixelRect& frame, const Pixel& colour, const WindowOptions& options);
  xcb_window_t makeWindow(const PixelRect& frame, const Pixel& colour) {
    return makeWindow(frame, colour, WindowOptions());
  }
  void activate(xcb_window_t window);
  // Where the window's own top left is on the screen.
  PixelRect placeOf(xcb_window_t window);
  xcb_window_t activeWindow();
  std::vector<std::uint32_t> rootWords(const std::string& property);

 private:
  TemporaryFolder home_;
  std::string display_;
  std::vector<pid_t> groups_;
  std::unique_ptr<XcbConnection> observer_;
};

// The argument, with a display behind it, that makes the test program lay a tint instead of testing.
inline constexpr std::string_view kLayTint = "--lay-tint";

// The classes under test on a desktop.
struct Overlays {
  explicit Overlays(PrivateDesktop& desktop)
      : connection(XcbConnection::open(desktop.display())),
        saver(connection.get()),
        x(*connection, saver),
        server(x.server),
        windows(&x.overlays) {}

  std::unique_ptr<XcbConnection> connection;
  ScreenSaver saver;
  XDesktop x;
  LinuxWindowServer server;
  LinuxOverlayWindows windows;
};

}  // namespace harbor
