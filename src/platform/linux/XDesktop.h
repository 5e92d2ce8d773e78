// The parts behind windows and overlays on an X server, in the order in which one needs another.
#pragma once

#include "platform/linux/ClientWindows.h"
#include "platform/linux/LinuxOverlayWindows.h"
#include "platform/linux/LinuxWindowServer.h"
#include "platform/linux/MainDisplay.h"
#include "platform/linux/OverlayDesktop.h"

namespace harbor {

struct XDesktop {
  // Both outlive this.
  XDesktop(XcbConnection& connection, ScreenSaver& screenSaver)
      : clients(connection),
        display(connection),
        overlays(connection, clients, display, screenSaver),
        server{&connection, &clients, &display, &overlays.stack()} {}

  ClientWindows clients;
  MainDisplay display;
  OverlayDesktop overlays;
  LinuxWindowServer::Parts server;
};

}  // namespace harbor
