// The table of a review window: sorts what it shows, ticks rows and presses their buttons by mouse, keyboard
// and assistive technologies. Rows are told in the model's own numbers, however the table is sorted.
#pragma once

#include <QTableView>

class QMenu;
class QSortFilterProxyModel;

namespace harbor {

class ReviewTableModel;

class ReviewTable : public QTableView {
  Q_OBJECT
 public:
  // The model outlives the table.
  ReviewTable(ReviewTableModel& model, QWidget* parent);

  // What Return does in a cell: a button is pressed, any other cell previews its row. Nothing in a row that
  // is disabled.
  void press(const QModelIndex& index);
  // Ticks or clears the row's box, where it may be.
  void toggle(const QModelIndex& index);
  // As a click on the head of the column: up, down, then the order of the search again.
  void sortFurther(int column);
  bool isEnabled(const QModelIndex& index) const;

 signals:
  void revealClicked(int row);
  void quickLookClicked(int row);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  void makeHeader();
  // Shares what the other columns leave between names and folders.
  void shareWidth();
  // Space ticks or clears all selected rows as it would the current one, which it ticks or clears alone when
  // that is not among them.
  void toggleSelectedRows();
  void toggle(const QList<int>& rows);
  void addSorting(QMenu& menu);

  ReviewTableModel& model_;
  QSortFilterProxyModel* sorted_;
};

}  // namespace harbor
