// The window in which an application's files are reviewed: a table with a check box, a reveal and a preview
// button in each row, a summary, a status line and a delete button. It shows what it is given and reports
// what the user does; a box that the user clicks changes with the row that comes back.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/FileUrl.h"

namespace harbor {

struct ReviewRow {
  std::optional<FileUrl> filePath;  // absent: a row without a file, shown as such
  std::uint64_t fileSize = 0;       // bytes
  bool isSelected = false;
  bool isEnabled = true;               // false: shown disabled, its check box and buttons do nothing
  std::optional<std::string> caution;  // why the user should look twice, plain text; absent: no sign
  // Why the item is only listed, plain text: its check box is off and does nothing. Absent: it can be
  // selected.
  std::optional<std::string> protection = std::nullopt;
  // With which other row the item goes, plain text; absent: it goes by itself, if at all.
  std::optional<std::string> goesWith = std::nullopt;

  friend bool operator==(const ReviewRow&, const ReviewRow&) = default;
};

// What a row has become. The item, its size and the caution stay.
struct ReviewRowUpdate {
  std::size_t row;
  ReviewRow now;
};

// A sentence about the application, with a button below or beside it unless the title is empty.
struct ReviewNotice {
  std::string text;
  std::string buttonTitle;

  friend bool operator==(const ReviewNotice&, const ReviewNotice&) = default;
};

// What a user does; called on the main thread, never from within a call to the window. Rows are counted in
// the order in which they were given, however the table is sorted on the screen.
struct ReviewWindowEvents {
  // The user wants these rows ticked, or cleared: one box that was clicked, or all rows that were chosen.
  std::function<void(const std::vector<std::size_t>& rows, bool isSelected)> selectionChanged;
  std::function<void(std::size_t row)> revealClicked;
  std::function<void(std::size_t row)> quickLookClicked;
  std::function<void()> deleteButtonClicked;
  // The user closed the window; comes once. The window may be destroyed from within.
  std::function<void()> viewDidDisappear;
  std::function<void()> noticeButtonClicked = {};
};

enum class DeleteButton { hidden, disabled, enabled };

class ReviewWindow {
 public:
  virtual ~ReviewWindow() = default;

  virtual void setTitle(const std::string& title) = 0;
  virtual void appendRows(std::vector<ReviewRow> rows) = 0;
  // In ascending order of the rows. The table's order, its place and the user's current cell stay.
  virtual void updateRows(std::vector<ReviewRowUpdate> updates) = 0;
  // The selection summary; nothing hides it.
  virtual void setFileSelectedInfo(const std::optional<std::string>& text) = 0;
  virtual void setDeleteDetailedInfo(const std::string& text) = 0;
  virtual void setDeleteButton(DeleteButton state) = 0;
  // The spinner over the table with its message; nothing hides both.
  virtual void setSpinner(const std::optional<std::string>& message) = 0;
  // The notice above the table; nothing hides it.
  virtual void setNotice(const std::optional<ReviewNotice>& notice) = 0;

  // Shows the window.
  virtual void showWindow() = 0;
  // Puts the shown window in front of all others of its level.
  virtual void orderFrontRegardless() = 0;
};

class ReviewWindows {
 public:
  virtual ~ReviewWindows() = default;

  // A resizable window that is not shown yet; null when it cannot be made. Destroying it closes it without
  // reporting anything.
  virtual std::unique_ptr<ReviewWindow> make(ReviewWindowEvents events) = 0;
};

}  // namespace harbor
