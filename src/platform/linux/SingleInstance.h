// Sees to it that the program runs once in a session: a second start has the first one show its menu and
// ends.
#pragma once

#include <functional>
#include <memory>

namespace harbor {

// The first instance owns the name com.tidewell.HarborTray on the session bus and answers to
// org.freedesktop.Application.Activate there. It also listens on a socket that is named after the user and
// the session's display and folder, for starts that find no session bus, or another one than it did.
class SingleInstance {
 public:
  enum class Role { first, second };

  // `activated` is called in the first instance, from its event loop, each time that the program is started
  // again.
  explicit SingleInstance(std::function<void()> activated);
  ~SingleInstance();
  SingleInstance(const SingleInstance&) = delete;
  SingleInstance& operator=(const SingleInstance&) = delete;

  // Second: the first instance has been told, or did not answer in time.
  Role claim();

 private:
  class BusObject;
  class Socket;

  Role claimBusName();
  Role claimSocket();
  void releaseBusName();

  std::function<void()> activated_;
  std::unique_ptr<BusObject> busObject_;
  std::unique_ptr<Socket> socket_;
};

}  // namespace harbor
