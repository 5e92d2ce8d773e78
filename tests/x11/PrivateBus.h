// A session bus of a test's own, on which nothing is started by itself.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDBusConnection>
#include <csignal>

#include "EventLoop.h"
#include "support/TemporaryFolder.h"

namespace harbor {

class PrivateBus {
 public:
  PrivateBus() {
    const std::string configuration = folder_.makeFile(
        "bus.conf",
        "<busconfig><type>session</type><listen>unix:path=" + folder_.path("bus") +
            "</listen><auth>EXTERNAL</auth><policy context=\"default\"><allow send_destination=\"*\"/>"
            "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>");
    daemon_ = fork();
    if (daemon_ == 0) {
      if (!freopen("/dev/null", "w", stderr)) _exit(127);
      execlp("dbus-daemon", "dbus-daemon", "--nofork", ("--config-file=" + configuration).c_str(),
             static_cast<char*>(nullptr));
      _exit(127);
    }
    EXPECT_TRUE(waitUntil([this] { return access(folder_.path("bus").c_str(), F_OK) == 0; }));
  }
  ~PrivateBus() {
    for (const QString& name : names_)
      QDBusConnection::disconnectFromBus(name);
    kill(daemon_, SIGTERM);
    waitpid(daemon_, nullptr, 0);
  }

  QDBusConnection connect(const QString& name) {
    names_.push_back(name);
    return QDBusConnection::connectToBus(address(), name);
  }
  QString address() const { return QString::fromStdString("unix:path=" + folder_.path("bus")); }

 private:
  TemporaryFolder folder_;
  pid_t daemon_ = -1;
  QStringList names_;
};

}  // namespace harbor
