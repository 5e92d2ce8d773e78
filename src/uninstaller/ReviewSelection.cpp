#include "uninstaller/ReviewSelection.h"

#include <algorithm>
#include <utility>

#include "base/PathBelow.h"

namespace harbor {

bool ReviewSelection::ByComponents::operator()(std::string_view a, std::string_view b) const {
  const auto rank = [](char c) { return c == '/' ? 0 : static_cast<unsigned char>(c) + 1; };
  return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(),
                                      [&](char x, char y) { return rank(x) < rank(y); });
}

ReviewSelection::ReviewSelection(std::vector<AppRelatedData>& items) : items_(items) {
  for (const AppRelatedData& item : items_)
    addRow(item.filePath ? item.filePath->path : std::string(), NewRow::Protection::none);
  settle();
}

void ReviewSelection::addRow(std::string place, NewRow::Protection protection) {
  const std::size_t number = rows_.size();
  rows_.push_back({places_.emplace(std::move(place), number), protection == NewRow::Protection::full, {}});
}

ReviewSelection::Rows ReviewSelection::atOrBelow(std::size_t row) const {
  const std::string& place = this->place(row);
  if (place.empty()) return {row};
  Rows rows;
  for (auto other = places_.lower_bound(place); other != places_.end() && isAtOrBelow(other->first, place);
       ++other)
    rows.push_back(other->second);
  return rows;
}

ReviewSelection::Rows ReviewSelection::atOrAbove(std::size_t row) const {
  Rows rows;
  std::string_view place = this->place(row);
  while (!place.empty()) {
    for (auto [other, end] = places_.equal_range(place); other != end; ++other)
      rows.push_back(other->second);
    place = place.substr(0, place.rfind('/'));
  }
  return rows;
}

ReviewSelection::Rows ReviewSelection::append(std::vector<NewRow> rows) {
  for (NewRow& row : rows) {
    const std::size_t number = rows_.size();
    items_.push_back(std::move(row.item));
    addRow(std::move(row.place), row.protection);
    if (rows_[number].isProtected) {
      protect(number);
      continue;
    }
    for (const std::size_t other : atOrBelow(number)) {
      if (rows_[other].isProtected) rows_[number].now.protectedBelow = other;
    }
    const Rows above = atOrAbove(number);
    items_[number].isSelected = std::any_of(above.begin(), above.end(), [&](std::size_t other) {
      return other != number && items_[other].isSelected;
    });
  }
  return settle();
}

void ReviewSelection::protect(std::size_t row) {
  for (const std::size_t other : atOrAbove(row)) {
    if (other == row) continue;
    if (!rows_[other].now.protectedBelow) rows_[other].now.protectedBelow = row;
    if (!items_[other].isSelected) continue;
    for (const std::size_t inner : atOrBelow(other))
      items_[inner].isSelected = false;
  }
}

ReviewSelection::Rows ReviewSelection::tick(const Rows& rows) {
  for (const std::size_t row : rows) {
    if (place(row).empty() || rows_[row].isProtected || rows_[row].now.protectedBelow) continue;
    for (const std::size_t other : atOrBelow(row))
      items_[other].isSelected = true;
  }
  return settle();
}

ReviewSelection::Rows ReviewSelection::clear(const Rows& rows) {
  for (const std::size_t row : rows) {
    for (const std::size_t other : atOrBelow(row))
      items_[other].isSelected = false;
    for (const std::size_t other : atOrAbove(row))
      items_[other].isSelected = false;
  }
  return settle();
}

// In the order of the places a ticked row stands before all those that go with it.
ReviewSelection::Rows ReviewSelection::settle() {
  auto outer = places_.cend();
  for (auto entry = places_.cbegin(); entry != places_.cend(); ++entry) {
    State& now = rows_[entry->second].now;
    now.isTicked = items_[entry->second].isSelected;
    now.goesWith.reset();
    if (!now.isTicked || entry->first.empty()) continue;
    if (outer != places_.cend() && isAtOrBelow(entry->first, outer->first)) {
      now.goesWith = outer->second;
    } else {
      outer = entry;
    }
  }
  Rows changed;
  for (std::size_t row = 0; row < rows_.size(); ++row) {
    if (rows_[row].reported == rows_[row].now) continue;
    rows_[row].reported = rows_[row].now;
    changed.push_back(row);
  }
  return changed;
}

ReviewSelection::Sum ReviewSelection::sum() const {
  Sum sum;
  for (std::size_t row = 0; row < rows_.size(); ++row) {
    if (!items_[row].isSelected) continue;
    ++sum.count;
    if (!goesWith(row)) sum.bytes += items_[row].fileSize;
  }
  return sum;
}

ReviewSelection::Rows ReviewSelection::outermost() const {
  Rows rows;
  for (std::size_t row = 0; row < rows_.size(); ++row) {
    if (items_[row].isSelected && !place(row).empty() && !goesWith(row)) rows.push_back(row);
  }
  return rows;
}

}  // namespace harbor
