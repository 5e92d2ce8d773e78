#include "platform/linux/DesktopAppearance.h"

#include <QApplication>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <array>

namespace harbor {
namespace {

const QString kService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString kGroup = QStringLiteral("org.freedesktop.appearance");
const QString kKey = QStringLiteral("color-scheme");
constexpr uint kPrefersDark = 1;

struct Shade {
  QPalette::ColorRole role;
  QRgb colour;
};

constexpr std::array kDark{
    Shade{QPalette::Window, 0xff323232},
    Shade{QPalette::WindowText, 0xfff0f0f0},
    Shade{QPalette::Base, 0xff242424},
    Shade{QPalette::AlternateBase, 0xff2b2b2b},
    Shade{QPalette::Text, 0xfff0f0f0},
    Shade{QPalette::PlaceholderText, 0xffa0a0a0},
    Shade{QPalette::Button, 0xff3c3c3c},
    Shade{QPalette::ButtonText, 0xfff0f0f0},
    Shade{QPalette::BrightText, 0xffff6b6b},
    Shade{QPalette::ToolTipBase, 0xff1e1e1e},
    Shade{QPalette::ToolTipText, 0xfff0f0f0},
    Shade{QPalette::Highlight, 0xff2a6fbf},
    Shade{QPalette::HighlightedText, 0xffffffff},
    Shade{QPalette::Link, 0xff78aeed},
    Shade{QPalette::LinkVisited, 0xffc79de8},
    Shade{QPalette::Light, 0xff4b4b4b},
    Shade{QPalette::Midlight, 0xff414141},
    Shade{QPalette::Mid, 0xff292929},
    Shade{QPalette::Dark, 0xff212121},
    Shade{QPalette::Shadow, 0xff141414},
};
constexpr std::array kDarkDisabled{
    Shade{QPalette::WindowText, 0xff8c8c8c},
    Shade{QPalette::Text, 0xff8c8c8c},
    Shade{QPalette::ButtonText, 0xff8c8c8c},
    Shade{QPalette::Highlight, 0xff4a4a4a},
};

QPalette darkPalette() {
  QPalette palette;
  for (const Shade& shade : kDark)
    palette.setColor(shade.role, QColor::fromRgb(shade.colour));
  for (const Shade& shade : kDarkDisabled)
    palette.setColor(QPalette::Disabled, shade.role, QColor::fromRgb(shade.colour));
  return palette;
}

// The older of the portal's two calls wraps its answer once more.
QVariant unwrapped(QVariant value) {
  while (value.metaType() == QMetaType::fromType<QDBusVariant>())
    value = value.value<QDBusVariant>().variant();
  return value;
}

}  // namespace

bool isDark(const QPalette& palette) {
  return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

DesktopAppearance::DesktopAppearance(QDBusConnection bus) {
  if (!bus.isConnected()) return;
  // The connection below knows the slot's type by its name.
  qRegisterMetaType<QDBusVariant>("QDBusVariant");
  bus.connect(kService, kPath, kInterface, QStringLiteral("SettingChanged"), this,
              SLOT(settingChanged(QString, QString, QDBusVariant)));
  QDBusMessage call = QDBusMessage::createMethodCall(kService, kPath, kInterface, QStringLiteral("Read"));
  call << kGroup << kKey;
  auto* const watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
  QObject::connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
    const QDBusPendingReply<QDBusVariant> reply = *watcher;
    if (reply.isValid()) apply(reply.value().variant());
    watcher->deleteLater();
  });
}

void DesktopAppearance::settingChanged(const QString& group, const QString& key, const QDBusVariant& value) {
  if (group == kGroup && key == kKey) apply(value.variant());
}

void DesktopAppearance::apply(const QVariant& colourScheme) {
  const bool wantsDark = unwrapped(colourScheme).toUInt() == kPrefersDark;
  if (wantsDark == isDarkened_ || (wantsDark && isDark(QApplication::palette()))) return;
  isDarkened_ = wantsDark;
  // A palette that says nothing gives every colour back to the toolkit.
  QApplication::setPalette(wantsDark ? darkPalette() : QPalette());
}

}  // namespace harbor
