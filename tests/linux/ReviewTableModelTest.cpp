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
    model.setRows({rowOf("/home/user/a & <b>", 999'000), gone, doubtful, ReviewRow{}});
    QObject::connect(&model, &ReviewTableModel::selectionChanged,
                     [this](int row, bool isSelected) { changes.emplace_back(row, isSelected); });
  }

  std::string text(int row, int column, int role = Qt::DisplayRole) const {
    return model.data(model.index(row, column), role).toString().toStdString();
  }

  QApplication& application = offscreenApplication();
  ReviewTableModel model;
  std::vector<std::pair<int, bool>> changes;
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
  EXPECT_FALSE(model.row(1).isSelected);
  EXPECT_FALSE(model.flags(model.index(1, ReviewTableModel::nameColumn)) & Qt::ItemIsEnabled);
  EXPECT_TRUE(changes.empty());
  EXPECT_TRUE(tick(2));
  EXPECT_TRUE(model.row(2).isSelected);
  EXPECT_EQ(changes, (std::vector<std::pair<int, bool>>{{2, true}}));
}

TEST_F(ReviewTable, CannotTickARowThatIsProtectedButUseIt) {
  ReviewRow owned = rowOf("/usr/bin/tool", 10);
  owned.protection = "Of the package tool";
  model.setRows({owned, rowOf("/a", 1)});
  const QModelIndex box = model.index(0, ReviewTableModel::checkColumn);
  EXPECT_FALSE(model.setData(box, Qt::Checked, Qt::CheckStateRole));
  EXPECT_FALSE(model.row(0).isSelected);
  EXPECT_TRUE(changes.empty());
  EXPECT_FALSE(model.flags(box) & Qt::ItemIsEnabled);
  EXPECT_TRUE(model.flags(model.index(0, ReviewTableModel::revealColumn)) & Qt::ItemIsEnabled);
  EXPECT_NE(text(0, ReviewTableModel::checkColumn, Qt::ToolTipRole).find("Of the package"),
            std::string::npos);
}

TEST_F(ReviewTable, ComparesNamesWhateverTheirCaseSizesByTheByteAndTicks) {
  model.setRows({rowOf("/z/Beta", 999), rowOf("/Y/alpha", 1000), rowOf("/z/beta", 7)});
  EXPECT_TRUE(model.comesBefore(1, 0, ReviewTableModel::nameColumn));
  EXPECT_FALSE(model.comesBefore(0, 2, ReviewTableModel::nameColumn));
  EXPECT_FALSE(model.comesBefore(2, 0, ReviewTableModel::nameColumn));
  EXPECT_TRUE(model.comesBefore(1, 0, ReviewTableModel::folderColumn));
  EXPECT_TRUE(model.comesBefore(0, 1, ReviewTableModel::sizeColumn));
  model.setData(model.index(0, ReviewTableModel::checkColumn), Qt::Checked, Qt::CheckStateRole);
  EXPECT_TRUE(model.comesBefore(1, 0, ReviewTableModel::checkColumn));
  model.appendRows({rowOf("/z/AARDVARK", 1)});
  EXPECT_TRUE(model.comesBefore(3, 1, ReviewTableModel::nameColumn));
}

}  // namespace
}  // namespace harbor
