// The widgets of a review window. Its events are queued, so that a handler may show an alert or destroy the
// window.
#pragma once

#include <QWidget>

#include "platform/ReviewWindow.h"

class QFrame;
class QLabel;
class QPushButton;

namespace harbor {

class ReviewTable;
class ReviewTableModel;

class ReviewWidget : public QWidget {
  Q_OBJECT
 public:
  explicit ReviewWidget(ReviewWindowEvents events);

  // Nothing is reported from now on.
  void forget() { events_ = {}; }

  ReviewTableModel& model() { return *model_; }
  void setSummary(const std::optional<std::string>& text);
  void setStatus(const std::string& text);
  void setDeleteButton(DeleteButton state);
  void setNotice(const std::optional<ReviewNotice>& notice);
  void setSpinner(const std::optional<std::string>& message);

 protected:
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void makeSpinner();
  // Calls the handler of that row's button once the table has returned from the event.
  void report(std::function<void(std::size_t row)> ReviewWindowEvents::*handler, int row);

  ReviewWindowEvents events_;
  ReviewTableModel* model_;
  ReviewTable* table_;
  QLabel* notice_;
  QPushButton* noticeButton_;
  QFrame* spinner_;
  QLabel* spinnerMessage_;
  QLabel* summary_;
  QLabel* status_;
  QPushButton* deleteButton_;
};

}  // namespace harbor
