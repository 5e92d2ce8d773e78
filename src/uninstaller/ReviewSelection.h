// The ticks of a review's rows, and which rows go with which.
//
// A row stands for a place on the disk. Moving a folder moves everything in it, so its tick is also theirs:
// - Ticking a row ticks every row at the same place and every row below it.
// - Clearing a row clears every row at the same place, below it and above it: what is to stay stays where it
//   is, with all that is in it. Every other row keeps its tick, including one that was ticked only because of
//   a row above it that has lost its own.
// - A protected row is never ticked, nor is any row above it.
// - A row that is added below a ticked one is ticked. A protected one clears that instead, with all rows
// below
//   it: what was asked for cannot be done, and what of it may go is asked anew.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "uninstaller/UninstalledApp.h"

namespace harbor {

class ReviewSelection {
 public:
  using Rows = std::vector<std::size_t>;  // numbers of rows

  struct NewRow {
    AppRelatedData item;  // not ticked
    // Where the item lies: absolute, without a link on the way. Empty: nowhere, so it is never ticked.
    std::string place;
    enum class Protection { none, full } protection = Protection::none;
  };

  struct Sum {
    std::size_t count = 0;    // of all ticked rows
    std::uint64_t bytes = 0;  // without those that go with another row

    friend bool operator==(const Sum&, const Sum&) = default;
  };

  // The rows are the record's items, which outlive the selection and whose ticks it keeps. Those that are
  // there already keep their ticks until the first change; their paths count as their places.
  explicit ReviewSelection(std::vector<AppRelatedData>& items);
  ReviewSelection(const ReviewSelection&) = delete;
  ReviewSelection& operator=(const ReviewSelection&) = delete;

  // Each returns the numbers of the rows of which anything below has changed, in ascending order.
  Rows append(std::vector<NewRow> rows);
  Rows tick(const Rows& rows);  // passes over those that cannot be ticked
  Rows clear(const Rows& rows);

  // The outermost ticked row that takes this ticked one along; nothing where it goes by itself.
  std::optional<std::size_t> goesWith(std::size_t row) const { return rows_[row].now.goesWith; }
  // A protected row that lies below; nothing where there is none.
  std::optional<std::size_t> protectedRowBelow(std::size_t row) const {
    return rows_[row].now.protectedBelow;
  }

  Sum sum() const;
  // The ticked rows that go with no other.
  Rows outermost() const;
  // The row with all others at its place or below it.
  Rows atOrBelow(std::size_t row) const;
  const std::string& place(std::size_t row) const { return rows_[row].entry->first; }

 private:
  // Sorts each place directly before what lies below it.
  struct ByComponents {
    using is_transparent = void;
    bool operator()(std::string_view a, std::string_view b) const;
  };
  using Places = std::multimap<std::string, std::size_t, ByComponents>;

  struct State {
    bool isTicked = false;
    std::optional<std::size_t> goesWith;
    std::optional<std::size_t> protectedBelow;

    friend bool operator==(const State&, const State&) = default;
  };
  struct Row {
    Places::const_iterator entry;
    bool isProtected = false;
    State now;
    std::optional<State> reported = std::nullopt;
  };

  void addRow(std::string place, NewRow::Protection protection);
  void protect(std::size_t row);
  Rows atOrAbove(std::size_t row) const;
  Rows settle();

  std::vector<AppRelatedData>& items_;
  Places places_;
  std::vector<Row> rows_;
};

}  // namespace harbor
