// The review window as a Qt window: a table with a summary, a status line and a delete button below it.
#pragma once

#include <QPointer>

#include "platform/ReviewWindow.h"
#include "platform/linux/UserTime.h"

namespace harbor {

class ReviewWidget;

class LinuxReviewWindow : public ReviewWindow {
 public:
  LinuxReviewWindow(ReviewWindowEvents events, UserTime& userTime);
  ~LinuxReviewWindow() override;

  void setTitle(const std::string& title) override;
  void appendRows(std::vector<ReviewRow> rows) override;
  void updateRows(std::vector<ReviewRowUpdate> updates) override;
  void setFileSelectedInfo(const std::optional<std::string>& text) override;
  void setDeleteDetailedInfo(const std::string& text) override;
  void setDeleteButton(DeleteButton state) override;
  void setSpinner(const std::optional<std::string>& message) override;
  void setNotice(const std::optional<ReviewNotice>& notice) override;
  void showWindow() override;
  void orderFrontRegardless() override;

 private:
  UserTime& userTime_;
  QPointer<ReviewWidget> widget_;
};

class LinuxReviewWindows : public ReviewWindows {
 public:
  explicit LinuxReviewWindows(UserTime& userTime) : userTime_(userTime) {}
  std::unique_ptr<ReviewWindow> make(ReviewWindowEvents events) override {
    return std::make_unique<LinuxReviewWindow>(std::move(events), userTime_);
  }

 private:
  UserTime& userTime_;
};

}  // namespace harbor
