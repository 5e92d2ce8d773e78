// The rows of a review window as a table model. Its row numbers are those in which the rows were given; what
// sorts and filters lies above it.
#pragma once

#include <QAbstractTableModel>
#include <QIcon>
#include <vector>

#include "platform/ReviewWindow.h"

namespace harbor {

class ReviewTableModel : public QAbstractTableModel {
  Q_OBJECT
 public:
  enum Column {
    checkColumn,
    nameColumn,
    folderColumn,
    sizeColumn,
    revealColumn,
    quickLookColumn,
    endOfColumns
  };

  explicit ReviewTableModel(QObject* parent = nullptr);

  void setRows(std::vector<ReviewRow> rows);
  void appendRows(std::vector<ReviewRow> rows);
  const ReviewRow& row(int index) const { return rows_[static_cast<std::size_t>(index)]; }

  // Whether one row stands before another where the table is sorted by that column: letters whatever their
  // case, sizes by the byte, and what is not ticked first.
  bool comesBefore(int left, int right, int column) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

 signals:
  // The user ticked or cleared a row's box.
  void selectionChanged(int row, bool isSelected);

 private:
  QVariant text(const ReviewRow& row, int column) const;
  QVariant toolTip(const ReviewRow& row, int column) const;
  QVariant accessibleText(const ReviewRow& row, int column) const;
  // Thousands of rows are sorted anew while more of them arrive: what they are compared by is made once.
  struct SortKeys {
    QString name;
    QString folder;
  };
  SortKeys sortKeysOf(const ReviewRow& row) const;
  void makeSortKeys();

  std::vector<ReviewRow> rows_;
  std::vector<SortKeys> sortKeys_;  // one for each row
  QIcon folderIcon_;
  QIcon fileIcon_;
  QIcon cautionIcon_;
};

}  // namespace harbor
