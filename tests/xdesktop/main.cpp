#include <gtest/gtest.h>

#include <QApplication>

#include "xdesktop/PrivateDesktop.h"

namespace {

// Another process's part in a test: lays a tint over the display and stays until it is killed.
int layTint(const char* display) {
  const auto connection = harbor::XcbConnection::open(display);
  if (!connection) return 1;
  harbor::ScreenSaver saver(connection.get());
  harbor::XDesktop desktop(*connection, saver);
  const harbor::LinuxWindowServer server(desktop.server);
  const auto tint = harbor::LinuxOverlayWindows(&desktop.overlays)
                        .make({.frame = server.mainDisplayBounds(),
                               .surface = harbor::OverlayWindowSpec::Surface::translucent,
                               .level = harbor::kScreenSaverWindowLevel});
  tint->setBackgroundColour({1.0, 0.0, 0.0, 0.5});
  tint->setIgnoresMouseEvents();
  tint->orderFrontRegardless();
  return QApplication::exec();
}

}  // namespace

// The toolkit itself shows nothing here: the classes under test talk to the X server of their test directly.
int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  if (argc == 3 && std::string_view(argv[1]) == harbor::kLayTint) return layTint(argv[2]);
  return RUN_ALL_TESTS();
}
