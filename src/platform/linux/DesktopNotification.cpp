#include "platform/linux/DesktopNotification.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QStringList>
#include <QVariantMap>

#include "platform/linux/LinuxApplication.h"

namespace harbor {

void notifyDesktop(const char* summary, const char* body) {
  const QString service = QStringLiteral("org.freedesktop.Notifications");
  QDBusMessage call = QDBusMessage::createMethodCall(
      service, QStringLiteral("/org/freedesktop/Notifications"), service, QStringLiteral("Notify"));
  constexpr quint32 kReplacesNone = 0;
  constexpr int kServiceDecidesHowLong = -1;
  const QString identifier = QString::fromLatin1(kApplicationIdentifier);
  call << QString::fromLatin1(kApplicationName) << kReplacesNone << identifier << QString::fromUtf8(summary)
       << QString::fromUtf8(body).toHtmlEscaped() << QStringList()
       << QVariantMap{{QStringLiteral("desktop-entry"), identifier}} << kServiceDecidesHowLong;
  QDBusConnection::sessionBus().send(call);
}

}  // namespace harbor
