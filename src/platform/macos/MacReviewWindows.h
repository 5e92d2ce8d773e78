// Review windows: a view-based table with a summary, a status line and a delete button below it.
#pragma once

#import <AppKit/AppKit.h>

#include "platform/ReviewWindow.h"
#include "platform/macos/MacPreviewPanel.h"
#include "platform/macos/ViewWindow.h"

@class HarborActionTarget, HarborReviewTable;

namespace harbor {

class MacReviewWindow : public ReviewWindow {
 public:
  MacReviewWindow(ReviewWindowEvents events, const MacPreviewPanel& previewPanel);

  void setTitle(const std::string& title) override;
  void appendRows(std::vector<ReviewRow> rows) override;
  void updateRows(std::vector<ReviewRowUpdate> updates) override;
  void setFileSelectedInfo(const std::optional<std::string>& text) override;
  void setDeleteDetailedInfo(const std::string& text) override;
  void setDeleteButton(DeleteButton state) override;
  void setSpinner(const std::optional<std::string>& message) override;
  void setNotice(const std::optional<ReviewNotice>& notice) override;
  void showWindow() override;
  void orderFrontRegardless() override;

 private:
  NSViewController* viewController(HarborPreviewSource* source);

  HarborReviewTable* table_;
  HarborActionTarget* deleteButtonClicked_;
  HarborActionTarget* noticeButtonClicked_;
  NSTextField* notice_;
  NSTextField* fileSelectedInfo_;
  NSTextField* deleteDetailedInfo_;
  NSTextField* spinnerMessage_;
  NSButton* deleteButton_;
  NSButton* noticeButton_;
  NSLayoutConstraint* tableTop_;
  NSProgressIndicator* spinner_;
  ViewWindow window_;
};

class MacReviewWindows : public ReviewWindows {
 public:
  explicit MacReviewWindows(const MacPreviewPanel& previewPanel) : previewPanel_(previewPanel) {}
  std::unique_ptr<ReviewWindow> make(ReviewWindowEvents events) override;

 private:
  const MacPreviewPanel& previewPanel_;
};

}  // namespace harbor
