#include "platform/linux/LinuxDistributedNotifications.h"

#include <QDBusConnection>
#include <QDBusMessage>

namespace harbor {
namespace {

QString toQString(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

void LinuxDistributedNotifications::post(std::string_view name, std::string_view object) {
  QDBusMessage signal =
      QDBusMessage::createSignal(QStringLiteral("/com/tidewell/HarborTray"),
                                 QStringLiteral("com.tidewell.DistributedNotification"), toQString(name));
  signal << toQString(object);
  QDBusConnection::sessionBus().send(signal);
}

}  // namespace harbor
