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

  void appendRows(std::vector<ReviewRow> rows);
  void updateRows(std::vector<ReviewRowUpdate> updates);
  const ReviewRow& row(int index) const { return rows_[static_cast<std::size_t>(index)]; }

  // Whether one row stands before another where the table is sorted by that column: letters whatever their
  // case, sizes by the byte, and what is not ticked first.
  bool comesBefore(int left, int right, int column) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  // Asks for a tick, or for it to be taken; the box changes when the row comes back.
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  // The same for all of the rows whose box may be used.
  void requestTicks(const QList<int>& rows, Qt::CheckState state);
  bool mayBeTicked(int row) const;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

 signals:
  // The user wants these rows, of which there is at least one, ticked or cleared.
  void ticksRequested(const QList<int>& rows, bool isSelected);

 private:
  QVariant text(const ReviewRow& row, int column) const;
  QVariant toolTip(const ReviewRow& row, int column) const;
  // What is said about the row beside its item, each on a line.
  static std::string remarks(const ReviewRow& row, int column);
  QVariant accessibleText(const ReviewRow& row, int column) const;
  // Thousands of rows are sorted anew while more of them arrive: what they are compared by is made once.
  struct SortKeys {
    QString name;
    QString folder;
  };
  SortKeys sortKeysOf(const ReviewRow& row) const;

  std::vector<ReviewRow> rows_;
  std::vector<SortKeys> sortKeys_;  // one for each row
  QIcon folderIcon_;
  QIcon fileIcon_;
  QIcon cautionIcon_;
};

}  // namespace harbor
