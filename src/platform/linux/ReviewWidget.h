// The widgets of a review window. Its events are queued, so that a handler may show an alert or destroy the
// window.
#pragma once

#include <QWidget>

#include "platform/ReviewWindow.h"

class QLabel;
class QProgressBar;
class QPushButton;
class QSortFilterProxyModel;
class QTableView;

namespace harbor {

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
  void setSpinner(const std::optional<std::string>& message);

 protected:
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void makeTable();
  void makeSpinner();
  void placeSpinner();
  // The user pressed Return on a cell, or clicked one that is a button.
  void pressed(const QModelIndex& proxyIndex);
  // Space ticks or clears all selected rows.
  void toggleSelectedRows();

  ReviewWindowEvents events_;
  ReviewTableModel* model_;
  QSortFilterProxyModel* sorted_;
  QTableView* table_;
  QWidget* spinner_;
  QLabel* spinnerMessage_;
  QLabel* summary_;
  QLabel* status_;
  QPushButton* deleteButton_;
};

}  // namespace harbor
