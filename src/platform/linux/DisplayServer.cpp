#include "platform/linux/DisplayServer.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <xcb/xcb.h>

#include <QDir>
#include <QLibraryInfo>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "base/FileDescriptor.h"

namespace harbor {
namespace {

std::string environment(const char* name) {
  const char* const value = std::getenv(name);
  return value ? value : "";
}

bool hasPlugin(const std::string& platform) {
  const QDir plugins(QLibraryInfo::path(QLibraryInfo::PluginsPath) + QStringLiteral("/platforms"));
  return !plugins.entryList({QStringLiteral("libq%1*.so").arg(QString::fromStdString(platform))}).isEmpty();
}

bool answersX11() {
  xcb_connection_t* const connection = xcb_connect(nullptr, nullptr);
  const bool answers = xcb_connection_has_error(connection) == 0;
  xcb_disconnect(connection);
  return answers;
}

bool answersWayland() {
  std::string path = environment("WAYLAND_DISPLAY");
  if (path.empty()) return false;
  if (path.front() != '/') path = environment("XDG_RUNTIME_DIR") + '/' + path;
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.size() >= sizeof(address.sun_path)) return false;
  std::memcpy(address.sun_path, path.c_str(), path.size());
  const FileDescriptor descriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  return descriptor &&
         connect(descriptor.get(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0;
}

}  // namespace

DisplayServer findDisplayServer() {
  const std::string wanted = environment("QT_QPA_PLATFORM");
  const bool wantsX11 = wanted.starts_with("xcb");
  const bool wantsWayland = wanted.starts_with("wayland");
  if (!wanted.empty() && !wantsX11 && !wantsWayland) return {wanted, {}};

  const std::string display = environment("DISPLAY");
  const std::string wayland = environment("WAYLAND_DISPLAY");
  if (!wantsWayland && !display.empty() && answersX11() && hasPlugin("xcb")) return {"xcb", {}};
  if (!wantsX11 && answersWayland() && hasPlugin("wayland")) return {"wayland", {}};

  if (display.empty() && wayland.empty())
    return {{}, "there is no display: neither DISPLAY nor WAYLAND_DISPLAY is set."};
  std::string tried = display.empty() ? "" : "the X server at \"" + display + "\"";
  if (!wayland.empty()) {
    if (!tried.empty()) tried += " or ";
    tried += "the Wayland compositor at \"" + wayland + "\"";
  }
  return {{}, "cannot use " + tried + ": it does not answer, or Qt has no plug-in for it."};
}

}  // namespace harbor
