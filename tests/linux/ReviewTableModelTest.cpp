#include "platform/linux/ReviewTableModel.h"

#include <gtest/gtest.h>

#include <utility>

#include "OffscreenApplication.h"

namespace harbor {
namespace {

ReviewRow rowOf(const char* path, std::uint64_t size) {
  ReviewRow row;
  row.filePath = FileUrl{path, false};
  row.fileSize = size;
  return row;
}

class ReviewTable : public testing::Test {
 protected:
  ReviewTable() {
    ReviewRow gone = rowOf("/tmp/c", 10);
    gone.isEnabled = false;
    ReviewRow doubtful = rowOf("/b", 2'000'000);
    doubtful.caution = "Another application uses it";
    model.appendRows({rowOf("/home/user/a & <b>", 999'000), gone, doubtful, ReviewRow{}});
    QObject::connect(
        &model, &ReviewTableModel::ticksRequested,
        [this](const QList<int>& rows, bool isSelected) { requests.emplace_back(rows, isSelected); });
  }

  std::string text(int row, int column, int role = Qt::DisplayRole) const {
    return model.data(model.index(row, column), role).toString().toStdString();
  }

  QApplication& application = offscreenApplication();
  ReviewTableModel model;
  std::vector<std::pair<QList<int>, bool>> requests;
};

TEST_F(ReviewTable, ShowsNameFolderAndSize) {
  EXPECT_EQ(text(0, ReviewTableModel::nameColumn), "a & <b>");
  EXPECT_EQ(text(0, ReviewTableModel::folderColumn), "/home/user");
  EXPECT_EQ(text(0, ReviewTableModel::sizeColumn), "999 KB");
  EXPECT_EQ(text(2, ReviewTableModel::folderColumn), "/");
  EXPECT_EQ(text(3, ReviewTableModel::nameColumn), "(no file)");
  EXPECT_EQ(text(3, ReviewTableModel::revealColumn), "");
}

TEST_F(ReviewTable, AlignsSizesToTheRight) {
  const auto alignment =
      model.data(model.index(0, ReviewTableModel::sizeColumn), Qt::TextAlignmentRole).toInt();
  EXPECT_TRUE(alignment & Qt::AlignRight);
}

TEST_F(ReviewTable, TellsTheWholePathAndTheReasonForCautionAsPlainText) {
  EXPECT_NE(text(0, ReviewTableModel::folderColumn, Qt::ToolTipRole).find("/home/user/a"), std::string::npos);
  EXPECT_EQ(text(0, ReviewTableModel::folderColumn, Qt::ToolTipRole).find("<b>"), std::string::npos);
  EXPECT_NE(text(2, ReviewTableModel::nameColumn, Qt::ToolTipRole).find("Another application uses it"),
            std::string::npos);
  EXPECT_TRUE(
      model.data(model.index(2, ReviewTableModel::nameColumn), Qt::ToolTipRole).toString().endsWith("\n/b"));
  EXPECT_EQ(text(3, ReviewTableModel::nameColumn, Qt::ToolTipRole), "");
}

TEST_F(ReviewTable, CannotTickARowThatIsDisabled) {
  const auto tick = [this](int row) {
    return model.setData(model.index(row, ReviewTableModel::checkColumn), Qt::Checked, Qt::CheckStateRole);
  };
  EXPECT_FALSE(tick(1));
  EXPECT_FALSE(model.flags(model.index(1, ReviewTableModel::nameColumn)) & Qt::ItemIsEnabled);
  EXPECT_TRUE(requests.empty());
  EXPECT_TRUE(tick(2));
  EXPECT_EQ(requests, (std::vector<std::pair<QList<int>, bool>>{{{2}, true}}));
}

TEST_F(ReviewTable, ABoxChangesWhenItsRowComesBack) {
  const QModelIndex box = model.index(0, ReviewTableModel::checkColumn);
  model.setData(box, Qt::Checked, Qt::CheckStateRole);
  EXPECT_EQ(model.data(box, Qt::CheckStateRole).toInt(), Qt::Unchecked);
  ReviewRow ticked = model.row(0);
  ticked.isSelected = true;
  model.updateRows({{0, ticked}});
  EXPECT_EQ(model.data(box, Qt::CheckStateRole).toInt(), Qt::Checked);
}

TEST_F(ReviewTable, AsksForAllTicksAtOnceAndPassesOverBoxesThatDoNothing) {
  model.requestTicks({0, 1, 2, 3}, Qt::Checked);
  model.requestTicks({1, 3}, Qt::Checked);
  EXPECT_EQ(requests, (std::vector<std::pair<QList<int>, bool>>{{{0, 2}, true}}));
}

TEST_F(ReviewTable, TellsWhichRowsHaveBecomeSomethingElse) {
  ReviewTableModel many;
  many.appendRows(std::vector<ReviewRow>(9, rowOf("/a", 1)));
  std::vector<std::pair<int, int>> told;
  QObject::connect(&many, &QAbstractItemModel::dataChanged,
                   [&](const QModelIndex& first, const QModelIndex& last) {
                     EXPECT_EQ(first.column(), 0);
                     EXPECT_EQ(last.column(), ReviewTableModel::endOfColumns - 1);
                     told.emplace_back(first.row(), last.row());
                   });
  std::vector<ReviewRowUpdate> updates;
  for (const std::size_t row : {0, 2, 3, 4, 8}) {
    updates.push_back({row, rowOf("/a", 1)});
    updates.back().now.isSelected = true;
  }
  many.updateRows(updates);
  EXPECT_EQ(told, (std::vector<std::pair<int, int>>{{0, 0}, {2, 4}, {8, 8}}));
  for (int row = 0; row < 9; ++row)
    EXPECT_EQ(many.row(row).isSelected, row == 0 || (row >= 2 && row <= 4) || row == 8);
}

TEST_F(ReviewTable, SaysWithWhatARowGoesBesideItsCaution) {
  ReviewRow inner = model.row(2);
  inner.goesWith = "Goes with a folder";
  model.updateRows({{2, inner}});
  for (const int column : {ReviewTableModel::checkColumn, ReviewTableModel::nameColumn,
                           ReviewTableModel::folderColumn, ReviewTableModel::sizeColumn}) {
    EXPECT_EQ(text(2, column, Qt::AccessibleDescriptionRole),
              "Goes with a folder\nAnother application uses it");
    const std::string tip = text(2, column, Qt::ToolTipRole);
    EXPECT_NE(tip.find("Goes with"), std::string::npos);
    EXPECT_NE(tip.find("Another application uses it"), std::string::npos);
    EXPECT_TRUE(tip.ends_with("\n/b")) << tip;
  }
}

TEST_F(ReviewTable, CannotTickARowThatIsProtectedButUseIt) {
  ReviewRow owned = rowOf("/usr/bin/tool", 10);
  owned.protection = "Of the package tool";
  model.appendRows({owned});
  const QModelIndex box = model.index(4, ReviewTableModel::checkColumn);
  EXPECT_FALSE(model.setData(box, Qt::Checked, Qt::CheckStateRole));
  EXPECT_TRUE(requests.empty());
  EXPECT_FALSE(model.flags(box) & Qt::ItemIsEnabled);
  EXPECT_TRUE(model.flags(model.index(4, ReviewTableModel::revealColumn)) & Qt::ItemIsEnabled);
  EXPECT_NE(text(4, ReviewTableModel::checkColumn, Qt::ToolTipRole).find("Of the package"),
            std::string::npos);
}

TEST_F(ReviewTable, ComparesNamesWhateverTheirCaseSizesByTheByteAndTicks) {
  ReviewTableModel three;
  three.appendRows({rowOf("/z/Beta", 999), rowOf("/Y/alpha", 1000), rowOf("/z/beta", 7)});
  EXPECT_TRUE(three.comesBefore(1, 0, ReviewTableModel::nameColumn));
  EXPECT_FALSE(three.comesBefore(0, 2, ReviewTableModel::nameColumn));
  EXPECT_FALSE(three.comesBefore(2, 0, ReviewTableModel::nameColumn));
  EXPECT_TRUE(three.comesBefore(1, 0, ReviewTableModel::folderColumn));
  EXPECT_TRUE(three.comesBefore(0, 1, ReviewTableModel::sizeColumn));
  ReviewRow ticked = three.row(0);
  ticked.isSelected = true;
  three.updateRows({{0, ticked}});
  EXPECT_TRUE(three.comesBefore(1, 0, ReviewTableModel::checkColumn));
  three.appendRows({rowOf("/z/AARDVARK", 1)});
  EXPECT_TRUE(three.comesBefore(3, 1, ReviewTableModel::nameColumn));
}

}  // namespace
}  // namespace harbor
