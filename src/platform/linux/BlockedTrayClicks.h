// Sees the clicks on an XEmbed tray icon that Qt throws away because a modal window is up.
#pragma once

#include <QAbstractNativeEventFilter>
#include <functional>

#include "platform/linux/ModalWindows.h"

namespace harbor {

class BlockedTrayClicks : public QAbstractNativeEventFilter {
 public:
  // `clicked` is called from the event loop, for each button that goes down on the icon while a window is up.
  BlockedTrayClicks(const ModalWindows& modalWindows, std::function<void()> clicked);
  ~BlockedTrayClicks() override;

  bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

 private:
  const ModalWindows& modalWindows_;
  std::function<void()> clicked_;
  QObject mainThread_;
};

}  // namespace harbor
