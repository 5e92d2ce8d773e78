#include "uninstaller/ReviewSelection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "base/PathBelow.h"

namespace harbor {
namespace {

using Rows = ReviewSelection::Rows;
using NewRow = ReviewSelection::NewRow;
using Protection = NewRow::Protection;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint64_t kBytes = 10;

NewRow rowAt(const std::string& place, Protection protection = Protection::none) {
  return {{FileUrl{place, true}, kBytes, false}, place, protection};
}

struct Selection : testing::Test {
  Rows ticked() const {
    Rows rows;
    for (std::size_t row = 0; row < items.size(); ++row) {
      if (items[row].isSelected) rows.push_back(row);
    }
    return rows;
  }

  std::vector<AppRelatedData> items;
  ReviewSelection selection{items};
};

TEST_F(Selection, TellsWhichRowsHaveChanged) {
  EXPECT_THAT(selection.append({rowAt("/a/b"), rowAt("/c"), rowAt("/a")}), ElementsAre(0, 1, 2));
  EXPECT_THAT(selection.tick({2}), ElementsAre(0, 2));
  EXPECT_THAT(selection.tick({0}), IsEmpty());
  EXPECT_THAT(selection.append({rowAt("/a/d")}), ElementsAre(3));
  EXPECT_THAT(selection.clear({3}), ElementsAre(0, 2, 3));
  EXPECT_THAT(ticked(), ElementsAre(0));
}

TEST_F(Selection, ANameThatBeginsLikeAFolderIsNotInIt) {
  selection.append({rowAt("/a/b"), rowAt("/a/b.conf"), rowAt("/a/b/c"), rowAt("/a/b-old/c"), rowAt("/a/bc")});
  selection.tick({0});
  EXPECT_THAT(ticked(), ElementsAre(0, 2));
  EXPECT_THAT(selection.atOrBelow(0), ElementsAre(0, 2));
}

TEST_F(Selection, NamesTheOutermostRowThatTakesAnotherAlong) {
  selection.append({rowAt("/a/b/c"), rowAt("/a/b"), rowAt("/a"), rowAt("/a")});
  selection.tick({1});
  EXPECT_EQ(selection.goesWith(0), 1u);
  EXPECT_EQ(selection.goesWith(1), std::nullopt);
  selection.tick({3});
  EXPECT_EQ(selection.goesWith(0), 2u);
  EXPECT_EQ(selection.goesWith(1), 2u);
  EXPECT_EQ(selection.goesWith(3), 2u);
  EXPECT_THAT(selection.outermost(), ElementsAre(2));
  selection.clear({2});
  EXPECT_EQ(selection.goesWith(0), std::nullopt);
}

TEST_F(Selection, TicksWhatMayBeTickedOfManyRows) {
  selection.append(
      {rowAt("/a"), rowAt("/a/own"), rowAt("/a/owned", Protection::full), rowAt("/b"), rowAt("/b/c")});
  EXPECT_THAT(selection.tick({0, 1, 2, 3, 4}), ElementsAre(1, 3, 4));
  EXPECT_THAT(ticked(), ElementsAre(1, 3, 4));
  EXPECT_EQ(selection.protectedRowBelow(0), 2u);
  EXPECT_EQ(selection.sum(), (ReviewSelection::Sum{3, 2 * kBytes}));
  selection.clear({0, 1, 2, 3, 4});
  EXPECT_THAT(ticked(), IsEmpty());
}

TEST_F(Selection, AFolderThatArrivesAroundAProtectedRowCannotBeTicked) {
  selection.append({rowAt("/a/owned", Protection::full)});
  selection.append({rowAt("/a")});
  EXPECT_THAT(selection.tick({1}), IsEmpty());
  EXPECT_EQ(selection.protectedRowBelow(1), 0u);
}

TEST_F(Selection, AProtectedRowLeavesTheTicksOfRowsThatGoByThemselves) {
  selection.append({rowAt("/a"), rowAt("/a/own"), rowAt("/b")});
  selection.tick({1, 2});
  selection.append({rowAt("/a/owned", Protection::full)});
  EXPECT_THAT(ticked(), ElementsAre(1, 2));
}

TEST_F(Selection, AnItemWithoutAPlaceIsNeverTickedNorTakenAlong) {
  NewRow nowhere{{std::nullopt, 0, false}, "", Protection::none};
  selection.append({nowhere, nowhere, rowAt("/a")});
  EXPECT_THAT(selection.tick({0, 1, 2}), ElementsAre(2));
  EXPECT_THAT(selection.outermost(), ElementsAre(2));
  EXPECT_EQ(selection.goesWith(1), std::nullopt);
}

TEST(StoredSelection, KeepsItsTicksUntilTheFirstChange) {
  std::vector<AppRelatedData> items{{FileUrl{"/a", true}, 1, true},
                                    {FileUrl{"/a/b", true}, 1, false},
                                    {FileUrl{"/c", true}, 1, false},
                                    {std::nullopt, 1, true}};
  ReviewSelection selection(items);
  EXPECT_TRUE(items[0].isSelected && items[3].isSelected);
  EXPECT_FALSE(items[1].isSelected || items[2].isSelected);
  EXPECT_THAT(selection.tick({2}), ElementsAre(2));
  EXPECT_THAT(selection.clear({1}), ElementsAre(0));
}

// The rules as they are written, each looking at all rows.
struct NaiveSelection {
  struct Row {
    std::string place;
    bool isProtected = false;
    bool isTicked = false;
  };
  std::vector<Row> rows;

  bool mayBeTicked(const Row& row) const {
    return std::none_of(rows.begin(), rows.end(), [&](const Row& other) {
      return other.isProtected && isAtOrBelow(other.place, row.place);
    });
  }
  void append(const std::string& place, bool isProtected) {
    bool isTicked = false;
    for (Row outer : rows) {
      if (!outer.isTicked || !isAtOrBelow(place, outer.place)) continue;
      isTicked = !isProtected;
      for (Row& row : rows)
        row.isTicked = row.isTicked && !(isProtected && isAtOrBelow(row.place, outer.place));
    }
    rows.push_back({place, isProtected, isTicked});
  }
  void tick(const Rows& numbers) {
    for (const std::size_t number : numbers) {
      if (!mayBeTicked(rows[number])) continue;
      for (Row& row : rows)
        row.isTicked = row.isTicked || isAtOrBelow(row.place, rows[number].place);
    }
  }
  void clear(const Rows& numbers) {
    for (const std::size_t number : numbers) {
      for (Row& row : rows)
        row.isTicked = row.isTicked && !isAtOrBelow(row.place, rows[number].place) &&
                       !isAtOrBelow(rows[number].place, row.place);
    }
  }
  std::vector<std::string> moved() const {
    std::vector<std::string> places;
    for (const Row& row : rows) {
      const bool isOutermost = std::none_of(rows.begin(), rows.end(), [&](const Row& other) {
        return other.isTicked && isBelow(row.place, other.place);
      });
      if (row.isTicked && isOutermost) places.push_back(row.place);
    }
    std::sort(places.begin(), places.end());
    places.erase(std::unique(places.begin(), places.end()), places.end());
    return places;
  }
};

class RandomReview {
 public:
  explicit RandomReview(unsigned seed) : random_(seed) {}

  std::size_t number(std::size_t end) {
    return std::uniform_int_distribution<std::size_t>(0, end - 1)(random_);
  }
  std::string place() {
    static constexpr const char* kNames[] = {"a", "a.b", "a b", "aa", "b"};
    std::string place;
    for (std::size_t left = number(4) + 1; left > 0; --left)
      place += std::string("/") + kNames[number(std::size(kNames))];
    return place;
  }
  Rows rows(std::size_t end) {
    Rows rows;
    for (std::size_t left = number(3) + 1; left > 0; --left)
      rows.push_back(number(end));
    return rows;
  }

 private:
  std::mt19937 random_;
};

TEST(RandomSelection, IsWhatTheRulesSayOnEveryStep) {
  for (unsigned seed = 0; seed < 1'000; ++seed) {
    RandomReview random(seed);
    std::vector<AppRelatedData> items;
    ReviewSelection selection(items);
    NaiveSelection naive;
    for (int step = 0; step < 30; ++step) {
      std::vector<bool> before;
      for (const AppRelatedData& item : items)
        before.push_back(item.isSelected);
      Rows changed;
      const std::size_t action = naive.rows.empty() ? 0 : random.number(3);
      if (action == 0) {
        std::vector<NewRow> added;
        for (std::size_t left = random.number(5) + 1; left > 0; --left) {
          const std::string place = random.place();
          const bool isProtected = random.number(12) == 0;
          naive.append(place, isProtected);
          added.push_back(rowAt(place, isProtected ? Protection::full : Protection::none));
        }
        changed = selection.append(std::move(added));
      } else {
        const Rows rows = random.rows(naive.rows.size());
        changed = action == 1 ? selection.tick(rows) : selection.clear(rows);
        action == 1 ? naive.tick(rows) : naive.clear(rows);
      }

      ReviewSelection::Sum sum;
      ASSERT_EQ(items.size(), naive.rows.size());
      for (std::size_t row = 0; row < items.size(); ++row) {
        ASSERT_EQ(items[row].isSelected, naive.rows[row].isTicked)
            << seed << ", step " << step << ", " << row;
        const bool isHeld = selection.protectedRowBelow(row) || naive.rows[row].isProtected;
        ASSERT_EQ(isHeld, !naive.mayBeTicked(naive.rows[row])) << seed << ", step " << step << ", " << row;
        const bool isChange = row >= before.size() || before[row] != items[row].isSelected;
        ASSERT_TRUE(!isChange || std::binary_search(changed.begin(), changed.end(), row));
        sum.count += items[row].isSelected ? 1 : 0;
      }
      std::vector<std::string> moved;
      for (const std::size_t row : selection.outermost())
        moved.push_back(selection.place(row));
      std::sort(moved.begin(), moved.end());
      ASSERT_EQ(moved, naive.moved()) << seed << ", step " << step;
      sum.bytes = moved.size() * kBytes;
      ASSERT_EQ(selection.sum(), sum);
    }
  }
}

}  // namespace
}  // namespace harbor
