// Review windows as records; a test uses their controls and closes them.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/PreviewPanel.h"
#include "platform/ReviewWindow.h"

namespace harbor {

class MemoryReviewWindows : public ReviewWindows {
 public:
  class Window : public ReviewWindow {
   public:
    Window(MemoryReviewWindows& owner, ReviewWindowEvents windowEvents)
        : events(std::move(windowEvents)), owner_(owner) {
      owner_.open.push_back(this);
    }
    ~Window() override { std::erase(owner_.open, this); }

    void setTitle(const std::string& newTitle) override { title = newTitle; }
    void appendRows(std::vector<ReviewRow> newRows) override {
      rows.insert(rows.end(), newRows.begin(), newRows.end());
    }
    void updateRows(std::vector<ReviewRowUpdate> updates) override {
      for (ReviewRowUpdate& update : updates)
        rows.at(update.row) = std::move(update.now);
    }
    void setFileSelectedInfo(const std::optional<std::string>& text) override { fileSelectedInfo = text; }
    void setDeleteDetailedInfo(const std::string& text) override { deleteDetailedInfo = text; }
    void setDeleteButton(DeleteButton state) override { deleteButton = state; }
    void setSpinner(const std::optional<std::string>& message) override { spinnerMessage = message; }
    void setNotice(const std::optional<ReviewNotice>& newNotice) override { notice = newNotice; }
    void showWindow() override { shown = true; }
    void orderFrontRegardless() override { ++ordersFront; }

    // What the user does. The events are copied first, since the window may go within one.
    void check(std::size_t row, bool on) { ReviewWindowEvents(events).selectionChanged({row}, on); }
    void close() { ReviewWindowEvents(events).viewDidDisappear(); }
    void clickNotice() { ReviewWindowEvents(events).noticeButtonClicked(); }
    void clickDelete() { ReviewWindowEvents(events).deleteButtonClicked(); }

    ReviewWindowEvents events;
    std::string title;
    std::vector<ReviewRow> rows;
    std::optional<std::string> fileSelectedInfo;
    std::string deleteDetailedInfo;
    DeleteButton deleteButton = DeleteButton::enabled;
    std::optional<std::string> spinnerMessage;
    std::optional<ReviewNotice> notice;
    bool shown = false;
    int ordersFront = 0;

   private:
    MemoryReviewWindows& owner_;
  };

  std::unique_ptr<ReviewWindow> make(ReviewWindowEvents events) override {
    return std::make_unique<Window>(*this, std::move(events));
  }

  std::vector<Window*> open;  // those that exist, in the order in which they were made
};

class MemoryPreviewPanel : public PreviewPanel {
 public:
  void preview(const FileUrl& item) override { previewed.push_back(item); }

  std::vector<FileUrl> previewed;
};

}  // namespace harbor
