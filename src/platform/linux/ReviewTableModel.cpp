#include "platform/linux/ReviewTableModel.h"

#include <QApplication>
#include <QStyle>
#include <algorithm>
#include <iterator>

#include "base/ByteCount.h"
#include "platform/linux/DisplayText.h"

namespace harbor {
namespace {

std::string folderOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == 0 ? "/" : path.substr(0, slash);
}

Qt::Alignment alignmentOf(int column) {
  const auto side = column == ReviewTableModel::sizeColumn ? Qt::AlignRight : Qt::AlignLeft;
  return side | Qt::AlignVCenter;
}

}  // namespace

ReviewTableModel::ReviewTableModel(QObject* parent)
    : QAbstractTableModel(parent),
      folderIcon_(QApplication::style()->standardIcon(QStyle::SP_DirIcon)),
      fileIcon_(QApplication::style()->standardIcon(QStyle::SP_FileIcon)),
      cautionIcon_(QApplication::style()->standardIcon(QStyle::SP_MessageBoxWarning)) {}

void ReviewTableModel::appendRows(std::vector<ReviewRow> rows) {
  if (rows.empty()) return;
  const int first = rowCount();
  for (const ReviewRow& row : rows)
    sortKeys_.push_back(sortKeysOf(row));
  beginInsertRows({}, first, first + static_cast<int>(rows.size()) - 1);
  rows_.insert(rows_.end(), std::make_move_iterator(rows.begin()), std::make_move_iterator(rows.end()));
  endInsertRows();
}

void ReviewTableModel::updateRows(std::vector<ReviewRowUpdate> updates) {
  for (std::size_t i = 0; i < updates.size();) {
    const std::size_t first = updates[i].row;
    std::size_t end = first;
    for (; i < updates.size() && updates[i].row == end; ++i, ++end)
      rows_[end] = std::move(updates[i].now);
    emit dataChanged(index(static_cast<int>(first), 0), index(static_cast<int>(end) - 1, columnCount() - 1));
  }
}

int ReviewTableModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int ReviewTableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : endOfColumns;
}

QVariant ReviewTableModel::text(const ReviewRow& row, int column) const {
  if (!row.filePath) return column == nameColumn ? QVariant(tr("(no file)")) : QVariant();
  switch (column) {
    case nameColumn:
      return withoutControls(lastPathComponent(row.filePath->path));
    case folderColumn:
      return withoutControls(folderOf(row.filePath->path));
    case sizeColumn:
      return QString::fromStdString(formatByteCount(row.fileSize));
    case revealColumn:
      return tr("Reveal");
    case quickLookColumn:
      return tr("Preview");
    default:
      return {};
  }
}

std::string ReviewTableModel::remarks(const ReviewRow& row, int column) {
  std::string text;
  const auto add = [&text](const std::optional<std::string>& remark) {
    if (remark) text += (text.empty() ? "" : "\n") + *remark;
  };
  if (column == checkColumn) add(row.protection);
  add(row.goesWith);
  add(row.caution);
  return text;
}

QVariant ReviewTableModel::toolTip(const ReviewRow& row, int column) const {
  if (row.filePath && column == revealColumn) return tr("Show in the file manager");
  if (row.filePath && column == quickLookColumn) return tr("Show what is in it");
  std::string tip = remarks(row, column);
  if (row.filePath) tip += (tip.empty() ? "" : "\n") + row.filePath->path;
  return tip.empty() ? QVariant() : toolTipText(tip);
}

QVariant ReviewTableModel::accessibleText(const ReviewRow& row, int column) const {
  const QString name = text(row, nameColumn).toString();
  switch (column) {
    case checkColumn:
      return tr("Select %1").arg(name);
    case revealColumn:
      return tr("Reveal %1").arg(name);
    case quickLookColumn:
      return tr("Preview %1").arg(name);
    default:
      return text(row, column);
  }
}

ReviewTableModel::SortKeys ReviewTableModel::sortKeysOf(const ReviewRow& row) const {
  return {text(row, nameColumn).toString().toCaseFolded(), text(row, folderColumn).toString().toCaseFolded()};
}

bool ReviewTableModel::comesBefore(int left, int right, int column) const {
  const auto l = static_cast<std::size_t>(left);
  const auto r = static_cast<std::size_t>(right);
  switch (column) {
    case checkColumn:
      return rows_[l].isSelected < rows_[r].isSelected;
    case nameColumn:
      return sortKeys_[l].name < sortKeys_[r].name;
    case folderColumn:
      return sortKeys_[l].folder < sortKeys_[r].folder;
    case sizeColumn:
      return rows_[l].fileSize < rows_[r].fileSize;
    default:
      return false;
  }
}

QVariant ReviewTableModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const ReviewRow& item = row(index.row());
  const int column = index.column();
  switch (role) {
    case Qt::DisplayRole:
      return text(item, column);
    case Qt::CheckStateRole:
      return column == checkColumn ? QVariant(item.isSelected ? Qt::Checked : Qt::Unchecked) : QVariant();
    case Qt::DecorationRole:
      if (column != nameColumn) return {};
      if (item.caution) return cautionIcon_;
      return item.filePath && item.filePath->isDirectory ? folderIcon_ : fileIcon_;
    case Qt::ToolTipRole:
      return toolTip(item, column);
    case Qt::TextAlignmentRole:
      return QVariant::fromValue(alignmentOf(column));
    case Qt::AccessibleTextRole:
      return accessibleText(item, column);
    case Qt::AccessibleDescriptionRole:
      return QString::fromStdString(remarks(item, column));
    default:
      return {};
  }
}

bool ReviewTableModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role != Qt::CheckStateRole || index.column() != checkColumn || !mayBeTicked(index.row())) return false;
  requestTicks({index.row()}, static_cast<Qt::CheckState>(value.toInt()));
  return true;
}

void ReviewTableModel::requestTicks(const QList<int>& rows, Qt::CheckState state) {
  QList<int> usable;
  std::copy_if(rows.begin(), rows.end(), std::back_inserter(usable),
               [this](int row) { return mayBeTicked(row); });
  if (!usable.empty()) emit ticksRequested(usable, state == Qt::Checked);
}

bool ReviewTableModel::mayBeTicked(int row) const {
  return flags(index(row, checkColumn)) & Qt::ItemIsEnabled;
}

QVariant ReviewTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) return {};
  if (role == Qt::TextAlignmentRole) return QVariant::fromValue(alignmentOf(section));
  // The buttons' columns need no head: each button says what it does.
  const bool isButton = section == revealColumn || section == quickLookColumn;
  if (role != Qt::AccessibleTextRole && (role != Qt::DisplayRole || isButton)) return {};
  switch (section) {
    case checkColumn:
      return tr("Delete");
    case nameColumn:
      return tr("Name");
    case folderColumn:
      return tr("Folder");
    case sizeColumn:
      return tr("Size");
    case revealColumn:
      return tr("Reveal");
    case quickLookColumn:
      return tr("Preview");
    default:
      return {};
  }
}

Qt::ItemFlags ReviewTableModel::flags(const QModelIndex& index) const {
  const ReviewRow& item = row(index.row());
  Qt::ItemFlags flags = Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
  const bool isUsable = item.isEnabled && item.filePath;
  if (isUsable && !(index.column() == checkColumn && item.protection)) flags |= Qt::ItemIsEnabled;
  if (index.column() == checkColumn) flags |= Qt::ItemIsUserCheckable;
  return flags;
}

}  // namespace harbor
