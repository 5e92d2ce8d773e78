// What assistive technologies see of a review window's table: a check box and two buttons in each row, which
// they can tick and press, and rows that say when they are disabled. Qt's own description knows only cells.
#pragma once

#include <QAccessibleWidget>
#include <map>
#include <utility>

namespace harbor {

class ReviewTable;

class AccessibleReviewTable : public QAccessibleWidget, public QAccessibleTableInterface {
 public:
  // From now on every ReviewTable is described by this class.
  static void install();

  void* interface_cast(QAccessible::InterfaceType type) override;
  QAccessibleInterface* childAt(int x, int y) const override;
  QAccessibleInterface* child(int index) const override;
  int childCount() const override;
  int indexOfChild(const QAccessibleInterface* child) const override;
  QAccessibleInterface* focusChild() const override;

  QAccessibleInterface* caption() const override { return nullptr; }
  QAccessibleInterface* summary() const override { return nullptr; }
  // Row -1 holds the heads of the columns.
  QAccessibleInterface* cellAt(int row, int column) const override;
  QString columnDescription(int column) const override;
  QString rowDescription(int) const override { return {}; }
  int columnCount() const override;
  int rowCount() const override;
  int selectedCellCount() const override;
  QList<QAccessibleInterface*> selectedCells() const override;
  int selectedColumnCount() const override { return 0; }
  int selectedRowCount() const override;
  QList<int> selectedColumns() const override { return {}; }
  QList<int> selectedRows() const override;
  bool isColumnSelected(int) const override { return false; }
  bool isRowSelected(int row) const override;
  bool selectRow(int row) override;
  bool selectColumn(int) override { return false; }
  bool unselectRow(int row) override;
  bool unselectColumn(int) override { return false; }
  void modelChange(QAccessibleTableModelChangeEvent* event) override;

 private:
  explicit AccessibleReviewTable(ReviewTable* table);
  ~AccessibleReviewTable() override;

  ReviewTable& table() const;
  void forgetCells() const;

  mutable std::map<std::pair<int, int>, QAccessible::Id> cells_;  // by row and column; made when asked for
};

}  // namespace harbor
