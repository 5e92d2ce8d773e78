#include "platform/linux/SingleInstance.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QSocketNotifier>
#include <QVariantMap>
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>

#include "base/FileDescriptor.h"
#include "platform/linux/LinuxApplication.h"

namespace harbor {
namespace {

// A first instance that is busy longer than this shows its menu when it is done; nobody waits for it.
constexpr int kActivationTimeoutMs = 2000;

const QString kInterface = QStringLiteral("org.freedesktop.Application");
const QString kObjectPath = QStringLiteral("/com/tidewell/HarborTray");

// An address without a file, which goes with the process that is bound to it.
struct Address {
  sockaddr_un name{};
  socklen_t length = 0;
};

Address activationAddress() {
  std::string name = std::string(kApplicationIdentifier) + '-' + std::to_string(getuid());
  for (const char* const variable : {"DISPLAY", "WAYLAND_DISPLAY", "XDG_RUNTIME_DIR"}) {
    const char* const value = std::getenv(variable);
    name += '-' + std::string(value ? value : "");
  }
  Address address;
  address.name.sun_family = AF_UNIX;
  const std::size_t size = std::min(name.size(), sizeof(address.name.sun_path) - 1);
  std::memcpy(address.name.sun_path + 1, name.data(), size);
  address.length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + size);
  return address;
}

FileDescriptor newSocket() {
  return FileDescriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
}

bool isOfThisUser(int descriptor) {
  ucred peer{};
  socklen_t size = sizeof(peer);
  return getsockopt(descriptor, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == getuid();
}

}  // namespace

class SingleInstance::BusObject : public QDBusVirtualObject {
 public:
  explicit BusObject(const std::function<void()>& activated) : activated_(activated) {}

  QString introspect(const QString&) const override {
    return QStringLiteral(
        "<interface name=\"org.freedesktop.Application\">"
        "<method name=\"Activate\"><arg type=\"a{sv}\" name=\"platform_data\" direction=\"in\"/></method>"
        "</interface>");
  }

  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    if (message.interface() != kInterface || message.member() != QLatin1String("Activate")) return false;
    connection.send(message.createReply());
    QMetaObject::invokeMethod(this, activated_, Qt::QueuedConnection);
    return true;
  }

 private:
  const std::function<void()>& activated_;
};

class SingleInstance::Socket {
 public:
  Socket(FileDescriptor descriptor, const std::function<void()>& activated)
      : descriptor_(std::move(descriptor)), notifier_(descriptor_.get(), QSocketNotifier::Read) {
    QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, [this, &activated] {
      const FileDescriptor caller(accept4(descriptor_.get(), nullptr, nullptr, SOCK_CLOEXEC));
      if (caller.get() >= 0 && isOfThisUser(caller.get())) activated();
    });
  }

 private:
  FileDescriptor descriptor_;
  QSocketNotifier notifier_;
};

SingleInstance::SingleInstance(std::function<void()> activated) : activated_(std::move(activated)) {}

SingleInstance::~SingleInstance() {
  if (busObject_) QDBusConnection::sessionBus().unregisterObject(kObjectPath);
}

void SingleInstance::releaseBusName() {
  if (!busObject_) return;
  QDBusConnection bus = QDBusConnection::sessionBus();
  bus.interface()->unregisterService(QString::fromLatin1(kApplicationIdentifier));
  bus.unregisterObject(kObjectPath);
  busObject_.reset();
}

SingleInstance::Role SingleInstance::claim() {
  if (QDBusConnection::sessionBus().isConnected() && claimBusName() == Role::second) return Role::second;
  // Also with a name of its own: the bus may have been started anew under a first instance, which then owns
  // nothing there.
  if (claimSocket() == Role::first) return Role::first;
  releaseBusName();
  return Role::second;
}

SingleInstance::Role SingleInstance::claimBusName() {
  QDBusConnection bus = QDBusConnection::sessionBus();
  const QString name = QString::fromLatin1(kApplicationIdentifier);
  // The object before the name: whoever sees the name may call at once.
  busObject_ = std::make_unique<BusObject>(activated_);
  bus.registerVirtualObject(kObjectPath, busObject_.get());
  const auto reply = bus.interface()->registerService(name, QDBusConnectionInterface::DontQueueService,
                                                      QDBusConnectionInterface::DontAllowReplacement);
  if (reply.isValid() && reply.value() == QDBusConnectionInterface::ServiceRegistered) return Role::first;

  bus.unregisterObject(kObjectPath);
  busObject_.reset();
  // A bus that does not answer has nobody on it to show the menu.
  if (!reply.isValid()) return Role::first;
  QDBusMessage call =
      QDBusMessage::createMethodCall(name, kObjectPath, kInterface, QStringLiteral("Activate"));
  call << QVariantMap();
  call.setAutoStartService(false);
  bus.call(call, QDBus::Block, kActivationTimeoutMs);
  return Role::second;
}

SingleInstance::Role SingleInstance::claimSocket() {
  const Address address = activationAddress();
  const auto* const name = reinterpret_cast<const sockaddr*>(&address.name);
  FileDescriptor listening = newSocket();
  if (listening.get() >= 0 && bind(listening.get(), name, address.length) == 0 &&
      listen(listening.get(), 8) == 0) {
    socket_ = std::make_unique<Socket>(std::move(listening), activated_);
    return Role::first;
  }
  const FileDescriptor calling = newSocket();
  // Another user may hold the address; that is no reason not to start.
  if (calling.get() >= 0 && connect(calling.get(), name, address.length) == 0 && isOfThisUser(calling.get()))
    return Role::second;
  return Role::first;
}

}  // namespace harbor
