#include "platform/linux/LinuxReviewWindow.h"

#include <utility>

#include "platform/linux/DisplayText.h"
#include "platform/linux/ReviewTableModel.h"
#include "platform/linux/ReviewWidget.h"

namespace harbor {

LinuxReviewWindow::LinuxReviewWindow(ReviewWindowEvents events, UserTime& userTime)
    : userTime_(userTime), widget_(new ReviewWidget(std::move(events))) {}

LinuxReviewWindow::~LinuxReviewWindow() {
  // One of the widget's own handlers may be running: it goes once that has returned.
  if (!widget_) return;
  widget_->forget();
  widget_->hide();
  widget_->deleteLater();
}

void LinuxReviewWindow::setTitle(const std::string& title) {
  widget_->setWindowTitle(withoutControls(title));
}
void LinuxReviewWindow::appendRows(std::vector<ReviewRow> rows) {
  widget_->model().appendRows(std::move(rows));
}
void LinuxReviewWindow::updateRows(std::vector<ReviewRowUpdate> updates) {
  widget_->model().updateRows(std::move(updates));
}
void LinuxReviewWindow::setFileSelectedInfo(const std::optional<std::string>& text) {
  widget_->setSummary(text);
}
void LinuxReviewWindow::setDeleteDetailedInfo(const std::string& text) {
  widget_->setStatus(text);
}
void LinuxReviewWindow::setDeleteButton(DeleteButton state) {
  widget_->setDeleteButton(state);
}
void LinuxReviewWindow::setSpinner(const std::optional<std::string>& message) {
  widget_->setSpinner(message);
}
void LinuxReviewWindow::setNotice(const std::optional<ReviewNotice>& notice) {
  widget_->setNotice(notice);
}

void LinuxReviewWindow::showWindow() {
  widget_->show();
  userTime_.bringToFront(*widget_);
}

void LinuxReviewWindow::orderFrontRegardless() {
  userTime_.bringToFront(*widget_);
}

}  // namespace harbor
