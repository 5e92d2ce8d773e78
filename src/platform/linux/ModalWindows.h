// The modal windows that are up, the last one on top. While there is one, nothing else of the program answers
// to the user, wherever the request comes from: it only brings that window to the front.
#pragma once

#include <QWidget>
#include <memory>
#include <vector>

#include "base/Subscription.h"
#include "platform/linux/UserTime.h"

namespace harbor {

class ModalWindows {
 public:
  explicit ModalWindows(UserTime& userTime) : userTime_(userTime) {}

  // The window counts as up until the subscription is dropped.
  Subscription enter(QWidget& window);
  bool isUp() const { return !windows_->empty(); }
  // Brings the topmost window to the front in the name of the user's last request; nothing when none is up.
  void bringToFront();

 private:
  UserTime& userTime_;
  std::shared_ptr<std::vector<QWidget*>> windows_ = std::make_shared<std::vector<QWidget*>>();
};

}  // namespace harbor
