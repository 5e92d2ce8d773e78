#include "platform/linux/ReviewTable.h"

#include <QActionGroup>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <QSortFilterProxyModel>
#include <QStyledItemDelegate>
#include <algorithm>
#include <array>
#include <utility>

#include "platform/linux/AccessibleReviewTable.h"
#include "platform/linux/ReviewTableModel.h"

namespace harbor {
namespace {

constexpr int kWidestName = 36;  // digits, as long as the user wants no other width
constexpr std::array kSortedColumns{ReviewTableModel::checkColumn, ReviewTableModel::nameColumn,
                                    ReviewTableModel::folderColumn, ReviewTableModel::sizeColumn};

bool isButtonColumn(int column) {
  return column == ReviewTableModel::revealColumn || column == ReviewTableModel::quickLookColumn;
}

class SortedRows : public QSortFilterProxyModel {
 public:
  SortedRows(ReviewTableModel& model, QObject* parent) : QSortFilterProxyModel(parent), model_(model) {}

 protected:
  bool lessThan(const QModelIndex& left, const QModelIndex& right) const override {
    return model_.comesBefore(left.row(), right.row(), left.column());
  }

 private:
  const ReviewTableModel& model_;
};

// Paths and sizes read from left to right in a window of either direction; a name reads as its letters do.
QString isolated(const QString& text, int column) {
  constexpr char16_t kLeftToRight = u'\u2066', kAsItsFirstLetter = u'\u2068', kEnd = u'\u2069';
  return QChar(column == ReviewTableModel::nameColumn ? kAsItsFirstLetter : kLeftToRight) + text +
         QChar(kEnd);
}

// The keyboard's place is a frame around the whole cell, beside whatever is in it.
class CellDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    QStyleOptionViewItem cell = option;
    cell.state &= ~QStyle::State_HasFocus;
    QStyledItemDelegate::paint(painter, cell, index);
    paintFocus(painter, option);
  }

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    QStyledItemDelegate::initStyleOption(option, index);
    if (option->direction == Qt::RightToLeft && !option->text.isEmpty() && !isButtonColumn(index.column()))
      option->text = isolated(option->text, index.column());
    // A style takes the edge of a box from the colour of the window, which on a dark list nobody sees.
    const QPalette& palette = option->palette;
    if (option->features & QStyleOptionViewItem::HasCheckIndicator &&
        palette.color(QPalette::Base).lightness() < 128) {
      option->palette.setColor(QPalette::Window, palette.color(QPalette::Text).darker(110));
    }
  }

  static void paintFocus(QPainter* painter, const QStyleOptionViewItem& option) {
    if (!(option.state & QStyle::State_HasFocus)) return;
    const bool isSelected = option.state & QStyle::State_Selected;
    painter->save();
    painter->setPen(option.palette.color(isSelected ? QPalette::HighlightedText : QPalette::Highlight));
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(QRectF(option.rect).adjusted(1.5, 1.5, -1.5, -1.5));
    painter->restore();
  }
};

// Draws a cell as a push button.
class ButtonDelegate : public CellDelegate {
 public:
  using CellDelegate::CellDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    const QString text = std::exchange(cell.text, QString());
    cell.state &= ~QStyle::State_HasFocus;
    QStyle* const style = cell.widget->style();
    style->drawControl(QStyle::CE_ItemViewItem, &cell, painter, cell.widget);
    if (!text.isEmpty()) {
      QStyleOptionButton button;
      button.rect = option.rect.adjusted(3, 2, -3, -2);
      button.text = text;
      button.palette = option.palette;
      button.direction = option.direction;
      button.fontMetrics = option.fontMetrics;
      button.state =
          (option.state & (QStyle::State_Enabled | QStyle::State_MouseOver)) | QStyle::State_Raised;
      style->drawControl(QStyle::CE_PushButton, &button, painter, cell.widget);
    }
    paintFocus(painter, option);
  }
};

}  // namespace

ReviewTable::ReviewTable(ReviewTableModel& model, QWidget* parent)
    : QTableView(parent), model_(model), sorted_(new SortedRows(model, this)) {
  AccessibleReviewTable::install();
  sorted_->setSourceModel(&model_);
  // A row must not move away under the pointer because its box was ticked; rows that arrive are sorted in.
  sorted_->setDynamicSortFilter(false);
  connect(sorted_, &QAbstractItemModel::rowsInserted, this, [this] {
    if (const int column = horizontalHeader()->sortIndicatorSection(); column >= 0)
      sorted_->sort(column, horizontalHeader()->sortIndicatorOrder());
  });
  setModel(sorted_);
  setAccessibleName(tr("Related files"));
  setSelectionBehavior(QAbstractItemView::SelectRows);
  setSelectionMode(QAbstractItemView::ExtendedSelection);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setAlternatingRowColors(true);
  setShowGrid(false);
  setWordWrap(false);
  setTextElideMode(Qt::ElideMiddle);
  setTabKeyNavigation(false);
  setMouseTracking(true);
  setItemDelegate(new CellDelegate(this));
  setItemDelegateForColumn(ReviewTableModel::revealColumn, new ButtonDelegate(this));
  setItemDelegateForColumn(ReviewTableModel::quickLookColumn, new ButtonDelegate(this));
  verticalHeader()->hide();
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 14);
  makeHeader();

  connect(this, &QTableView::clicked, this, [this](const QModelIndex& index) {
    // A click on a box alone would leave the keyboard on another row, which Space would then tick.
    if (index.column() == ReviewTableModel::checkColumn) setCurrentIndex(index);
    if (isButtonColumn(index.column())) press(index);
  });
}

void ReviewTable::makeHeader() {
  // Search order until the user asks for another.
  setSortingEnabled(true);
  QHeaderView* const header = horizontalHeader();
  header->setSortIndicatorClearable(true);
  header->setSortIndicator(-1, Qt::AscendingOrder);
  sorted_->sort(-1);
  connect(header, &QHeaderView::sortIndicatorChanged, this, [header](int column) {
    if (isButtonColumn(column)) header->setSortIndicator(-1, Qt::AscendingOrder);
  });
  header->setHighlightSections(false);
  header->setSectionResizeMode(QHeaderView::Interactive);
  header->setSectionResizeMode(ReviewTableModel::folderColumn, QHeaderView::Stretch);
  const int unit = fontMetrics().horizontalAdvance(QLatin1Char('0'));
  header->setMinimumSectionSize(unit * 5);
  header->resizeSection(ReviewTableModel::checkColumn, unit * 9);
  header->resizeSection(ReviewTableModel::sizeColumn, unit * 12);
  header->resizeSection(ReviewTableModel::revealColumn, unit * 11);
  header->resizeSection(ReviewTableModel::quickLookColumn, unit * 11);
}

void ReviewTable::shareWidth() {
  QHeaderView* const header = horizontalHeader();
  int room = viewport()->width() - verticalScrollBar()->sizeHint().width();
  for (int column = 0; column < header->count(); ++column) {
    if (column != ReviewTableModel::nameColumn && column != ReviewTableModel::folderColumn)
      room -= header->sectionSize(column);
  }
  const int unit = fontMetrics().horizontalAdvance(QLatin1Char('0'));
  header->resizeSection(ReviewTableModel::nameColumn,
                        std::clamp(room / 2, header->minimumSectionSize(), unit * kWidestName));
}

void ReviewTable::showEvent(QShowEvent* event) {
  // Later on the widths are the user's.
  if (!event->spontaneous()) shareWidth();
  QTableView::showEvent(event);
}

bool ReviewTable::isEnabled(const QModelIndex& index) const {
  return index.isValid() && (sorted_->flags(index) & Qt::ItemIsEnabled);
}

void ReviewTable::press(const QModelIndex& index) {
  if (!isEnabled(index)) return;
  const int row = sorted_->mapToSource(index).row();
  if (index.column() == ReviewTableModel::revealColumn) {
    emit revealClicked(row);
  } else {
    emit quickLookClicked(row);
  }
}

void ReviewTable::toggle(const QModelIndex& index) {
  const QModelIndex row = sorted_->mapToSource(index);
  if (row.isValid()) toggle(QList{row.row()});
}

// As the first of the rows whose box may be used.
void ReviewTable::toggle(const QList<int>& rows) {
  const auto first =
      std::find_if(rows.begin(), rows.end(), [this](int row) { return model_.mayBeTicked(row); });
  if (first == rows.end()) return;
  model_.requestTicks(rows, model_.row(*first).isSelected ? Qt::Unchecked : Qt::Checked);
}

void ReviewTable::toggleSelectedRows() {
  if (!currentIndex().isValid()) return;
  // By their names: a box that is disabled counts as not selected, and its whole row with it.
  QModelIndexList selected = selectionModel()->selectedRows(ReviewTableModel::nameColumn);
  const QModelIndex current = currentIndex().siblingAtColumn(ReviewTableModel::nameColumn);
  const auto found = std::find(selected.begin(), selected.end(), current);
  if (found == selected.end()) {
    toggle(current);
    return;
  }
  std::iter_swap(selected.begin(), found);
  QList<int> rows;
  for (const QModelIndex& index : selected)
    rows.append(sorted_->mapToSource(index).row());
  toggle(rows);
}

void ReviewTable::sortFurther(int column) {
  QHeaderView* const header = horizontalHeader();
  if (header->sortIndicatorSection() != column) {
    header->setSortIndicator(column, Qt::AscendingOrder);
  } else if (header->sortIndicatorOrder() == Qt::AscendingOrder) {
    header->setSortIndicator(column, Qt::DescendingOrder);
  } else {
    header->setSortIndicator(-1, Qt::AscendingOrder);
  }
}

void ReviewTable::keyPressEvent(QKeyEvent* event) {
  const QModelIndex current = currentIndex();
  const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  const bool isSpace = event->key() == Qt::Key_Space;
  if (current.isValid() && (isReturn || (isSpace && isButtonColumn(current.column())))) {
    press(current);
  } else if (isSpace) {
    toggleSelectedRows();
  } else {
    QTableView::keyPressEvent(event);
  }
}

void ReviewTable::contextMenuEvent(QContextMenuEvent* event) {
  const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
  const QModelIndex index = isByKey ? currentIndex() : indexAt(viewport()->mapFromGlobal(event->globalPos()));
  if (isByKey) scrollTo(index);
  auto* const menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  const auto add = [&](const QString& text, int column) {
    QAction* const action = menu->addAction(text);
    const QPersistentModelIndex cell = index.siblingAtColumn(column);
    action->setEnabled(isEnabled(cell));
    connect(action, &QAction::triggered, this, [this, cell] { press(cell); });
  };
  add(tr("Reveal"), ReviewTableModel::revealColumn);
  add(tr("Preview"), ReviewTableModel::quickLookColumn);
  menu->addSeparator();
  addSorting(*menu->addMenu(tr("Sort By")));
  menu->popup(isByKey && index.isValid() ? viewport()->mapToGlobal(visualRect(index).bottomLeft())
                                         : event->globalPos());
}

void ReviewTable::addSorting(QMenu& menu) {
  QHeaderView* const header = horizontalHeader();
  auto* const order = new QActionGroup(&menu);
  const auto add = [&](const QString& text, int column, Qt::SortOrder direction) {
    QAction* const action = order->addAction(text);
    action->setCheckable(true);
    action->setChecked(header->sortIndicatorSection() == column &&
                       (column < 0 || header->sortIndicatorOrder() == direction));
    menu.addAction(action);
    connect(action, &QAction::triggered, this,
            [header, column, direction] { header->setSortIndicator(column, direction); });
  };
  add(tr("Search Order"), -1, Qt::AscendingOrder);
  for (const int column : kSortedColumns) {
    const QString title = model_.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
    add(tr("%1, Ascending").arg(title), column, Qt::AscendingOrder);
    add(tr("%1, Descending").arg(title), column, Qt::DescendingOrder);
  }
}

}  // namespace harbor
