#include "platform/linux/AccessibleReviewTable.h"

#include <QHeaderView>

#include "platform/linux/ReviewTable.h"
#include "platform/linux/ReviewTableModel.h"

namespace harbor {
namespace {

constexpr int kHead = -1;  // the row of the columns' heads, and the column of the rows' hidden ones

// A place in the table, whatever stands there at the moment.
class AccessibleCell : public QAccessibleInterface,
                       public QAccessibleTableCellInterface,
                       public QAccessibleActionInterface {
 public:
  AccessibleCell(ReviewTable& table, int row, int column) : table_(table), row_(row), column_(column) {}

  int row() const { return row_; }
  int column() const { return column_; }

  bool isValid() const override { return row_ < model().rowCount() && column_ < model().columnCount(); }
  QObject* object() const override { return nullptr; }
  QWindow* window() const override { return table_.window()->windowHandle(); }
  QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(&table_); }
  QAccessibleInterface* childAt(int, int) const override { return nullptr; }
  QAccessibleInterface* child(int) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface*) const override { return -1; }
  void setText(QAccessible::Text, const QString&) override {}

  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::TableCellInterface) return static_cast<QAccessibleTableCellInterface*>(this);
    if (type == QAccessible::ActionInterface) return static_cast<QAccessibleActionInterface*>(this);
    return nullptr;
  }

  QAccessible::Role role() const override {
    if (row_ == kHead) return QAccessible::ColumnHeader;
    if (column_ == kHead) return QAccessible::RowHeader;
    if (column_ == ReviewTableModel::checkColumn) return QAccessible::CheckBox;
    return isButton() ? QAccessible::Button : QAccessible::Cell;
  }

  QString text(QAccessible::Text what) const override {
    if (!isValid() || column_ == kHead) return {};
    const auto ask = [this](int role) {
      return (row_ == kHead ? model().headerData(column_, Qt::Horizontal, role) : index().data(role))
          .toString();
    };
    if (what == QAccessible::Name) return ask(Qt::AccessibleTextRole);
    if (what == QAccessible::Description) return ask(Qt::AccessibleDescriptionRole);
    return {};
  }

  QRect rect() const override {
    if (!isValid() || column_ == kHead) return {};
    if (row_ == kHead) {
      const QHeaderView& header = *table_.horizontalHeader();
      const QRect section(header.sectionViewportPosition(column_), 0, header.sectionSize(column_),
                          header.height());
      return section.translated(header.viewport()->mapToGlobal(QPoint()));
    }
    const QRect cell = table_.visualRect(index());
    return cell.isEmpty() ? QRect() : cell.translated(table_.viewport()->mapToGlobal(QPoint()));
  }

  QAccessible::State state() const override {
    QAccessible::State state;
    if (!isValid() || column_ == kHead) {
      state.invisible = true;
      return state;
    }
    state.invisible = !table_.isVisible();
    if (row_ == kHead) return state;
    const QModelIndex cell = index();
    state.offscreen = !table_.viewport()->rect().intersects(table_.visualRect(cell));
    state.disabled = !table_.isEnabled(cell);
    state.selectable = true;
    state.selected = isSelected();
    state.focusable = !state.disabled;
    state.focused = table_.hasFocus() && table_.currentIndex() == cell;
    if (column_ == ReviewTableModel::checkColumn) {
      state.checkable = true;
      state.checked = cell.data(Qt::CheckStateRole).toInt() == Qt::Checked;
    }
    return state;
  }

  bool isSelected() const override {
    return row_ != kHead && column_ != kHead && table_.selectionModel()->isSelected(index());
  }
  QList<QAccessibleInterface*> columnHeaderCells() const override {
    return {parent()->tableInterface()->cellAt(kHead, column_)};
  }
  QList<QAccessibleInterface*> rowHeaderCells() const override { return {}; }
  int columnIndex() const override { return column_; }
  int rowIndex() const override { return row_; }
  int columnExtent() const override { return 1; }
  int rowExtent() const override { return 1; }
  QAccessibleInterface* table() const override { return parent(); }

  QStringList actionNames() const override {
    if (!isValid() || column_ == kHead) return {};
    if (row_ == kHead) return isButton() ? QStringList{} : QStringList{pressAction()};
    if (column_ == ReviewTableModel::checkColumn) return {toggleAction()};
    return isButton() ? QStringList{pressAction()} : QStringList{};
  }
  void doAction(const QString& name) override {
    if (!actionNames().contains(name)) return;
    if (row_ == kHead) {
      table_.sortFurther(column_);
    } else if (name == toggleAction()) {
      table_.toggle(index());
    } else {
      table_.press(index());
    }
  }
  QStringList keyBindingsForAction(const QString&) const override { return {}; }

 private:
  const QAbstractItemModel& model() const { return *table_.model(); }
  QModelIndex index() const { return model().index(row_, column_); }
  bool isButton() const {
    return column_ == ReviewTableModel::revealColumn || column_ == ReviewTableModel::quickLookColumn;
  }

  ReviewTable& table_;
  int row_;
  int column_;
};

}  // namespace

void AccessibleReviewTable::install() {
  static const bool isInstalled = [] {
    QAccessible::installFactory([](const QString&, QObject* object) -> QAccessibleInterface* {
      auto* const table = qobject_cast<ReviewTable*>(object);
      return table ? new AccessibleReviewTable(table) : nullptr;
    });
    return true;
  }();
  Q_UNUSED(isInstalled)
}

AccessibleReviewTable::AccessibleReviewTable(ReviewTable* table)
    : QAccessibleWidget(table, QAccessible::Table) {}

AccessibleReviewTable::~AccessibleReviewTable() {
  forgetCells();
}

ReviewTable& AccessibleReviewTable::table() const {
  return *static_cast<ReviewTable*>(widget());
}

void AccessibleReviewTable::forgetCells() const {
  for (const auto& [place, id] : std::exchange(cells_, {}))
    QAccessible::deleteAccessibleInterface(id);
}

void* AccessibleReviewTable::interface_cast(QAccessible::InterfaceType type) {
  if (type == QAccessible::TableInterface) return static_cast<QAccessibleTableInterface*>(this);
  return QAccessibleWidget::interface_cast(type);
}

// Children are numbered as in Qt's own description of a table, because the view's events name them so: row by
// row, the heads of the columns first, each row behind its own head.
QAccessibleInterface* AccessibleReviewTable::child(int index) const {
  if (index < 0 || index >= childCount()) return nullptr;
  const int width = columnCount() + 1;
  return cellAt(index / width - 1, index % width - 1);
}

int AccessibleReviewTable::childCount() const {
  return (rowCount() + 1) * (columnCount() + 1);
}

int AccessibleReviewTable::indexOfChild(const QAccessibleInterface* child) const {
  const auto* const cell = dynamic_cast<const AccessibleCell*>(child);
  return cell ? (cell->row() + 1) * (columnCount() + 1) + cell->column() + 1 : -1;
}

QAccessibleInterface* AccessibleReviewTable::childAt(int x, int y) const {
  const QHeaderView& header = *table().horizontalHeader();
  const QPoint inHeader = header.viewport()->mapFromGlobal(QPoint(x, y));
  if (header.viewport()->rect().contains(inHeader)) return cellAt(kHead, header.logicalIndexAt(inHeader));
  const QPoint inside = table().viewport()->mapFromGlobal(QPoint(x, y));
  const QModelIndex index = table().indexAt(inside);
  return index.isValid() ? cellAt(index.row(), index.column()) : nullptr;
}

QAccessibleInterface* AccessibleReviewTable::focusChild() const {
  const QModelIndex current = table().currentIndex();
  return current.isValid() ? cellAt(current.row(), current.column()) : nullptr;
}

QAccessibleInterface* AccessibleReviewTable::cellAt(int row, int column) const {
  if (row < kHead || row >= rowCount() || column < kHead || column >= columnCount()) return nullptr;
  QAccessible::Id& id = cells_[{row, column}];
  if (id == 0) id = QAccessible::registerAccessibleInterface(new AccessibleCell(table(), row, column));
  return QAccessible::accessibleInterface(id);
}

QString AccessibleReviewTable::columnDescription(int column) const {
  return table().model()->headerData(column, Qt::Horizontal, Qt::AccessibleTextRole).toString();
}

int AccessibleReviewTable::columnCount() const {
  return table().model()->columnCount();
}

int AccessibleReviewTable::rowCount() const {
  return table().model()->rowCount();
}

int AccessibleReviewTable::selectedCellCount() const {
  return selectedRowCount() * columnCount();
}

QList<QAccessibleInterface*> AccessibleReviewTable::selectedCells() const {
  QList<QAccessibleInterface*> cells;
  for (const int row : selectedRows()) {
    for (int column = 0; column < columnCount(); ++column)
      cells.append(cellAt(row, column));
  }
  return cells;
}

int AccessibleReviewTable::selectedRowCount() const {
  return static_cast<int>(selectedRows().size());
}

QList<int> AccessibleReviewTable::selectedRows() const {
  QList<int> rows;
  for (const QModelIndex& index : table().selectionModel()->selectedRows())
    rows.append(index.row());
  return rows;
}

bool AccessibleReviewTable::isRowSelected(int row) const {
  return table().selectionModel()->isRowSelected(row);
}

bool AccessibleReviewTable::selectRow(int row) {
  const QModelIndex index = table().model()->index(row, 0);
  if (!index.isValid()) return false;
  table().selectionModel()->select(index, QItemSelectionModel::Select | QItemSelectionModel::Rows);
  return true;
}

bool AccessibleReviewTable::unselectRow(int row) {
  const QModelIndex index = table().model()->index(row, 0);
  if (!index.isValid()) return false;
  table().selectionModel()->select(index, QItemSelectionModel::Deselect | QItemSelectionModel::Rows);
  return true;
}

void AccessibleReviewTable::modelChange(QAccessibleTableModelChangeEvent* event) {
  using Change = QAccessibleTableModelChangeEvent;
  if (event->modelChangeType() == Change::ModelReset || event->modelChangeType() == Change::RowsRemoved) {
    forgetCells();
    return;
  }
  if (event->modelChangeType() != Change::DataChanged) return;
  for (int row = event->firstRow(); row <= event->lastRow(); ++row) {
    const auto box = cells_.find({row, ReviewTableModel::checkColumn});
    if (box == cells_.end()) continue;
    QAccessible::State changed;
    changed.checked = true;
    QAccessibleStateChangeEvent tick(QAccessible::accessibleInterface(box->second), changed);
    QAccessible::updateAccessibility(&tick);
    QAccessibleEvent description(QAccessible::accessibleInterface(box->second),
                                 QAccessible::DescriptionChanged);
    QAccessible::updateAccessibility(&description);
  }
}

}  // namespace harbor
