// Dark windows where the desktop wants them: follows the colour scheme that the desktop portal announces, now
// and when it changes, unless the toolkit has taken it up itself.
#pragma once

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>
#include <QPalette>
#include <QString>

namespace harbor {

// Whether texts are lighter than what they stand on.
bool isDark(const QPalette& palette);

class DesktopAppearance : public QObject {
  Q_OBJECT

 public:
  // Asks the portal on this bus without waiting for its answer; where there is none, everything stays as the
  // toolkit has it.
  explicit DesktopAppearance(QDBusConnection bus = QDBusConnection::sessionBus());

 private slots:
  void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

 private:
  void apply(const QVariant& colourScheme);

  bool isDarkened_ = false;  // by this object
};

}  // namespace harbor
