#import "platform/macos/MacReviewWindows.h"

#import "platform/macos/ActionTarget.h"
#import "platform/macos/MacValues.h"
#import "platform/macos/ReviewTable.h"

// The controller of the window's view, which the preview panel finds among the responders.
@interface HarborReviewViewController : HarborViewController
@property(strong) HarborPreviewSource* previewSource;
@end

@implementation HarborReviewViewController

- (BOOL)acceptsPreviewPanelControl:(QLPreviewPanel*)panel {
  return YES;
}

- (void)beginPreviewPanelControl:(QLPreviewPanel*)panel {
  panel.dataSource = self.previewSource;
  panel.delegate = self.previewSource;
}

- (void)endPreviewPanelControl:(QLPreviewPanel*)panel {
  panel.dataSource = nil;
  panel.delegate = nil;
}

@end

namespace harbor {
namespace {

constexpr double kMargin = 20;
constexpr double kGap = 8;
constexpr double kNoticeHeight = 40;
constexpr double kViewWidth = 760;
constexpr double kViewHeight = 440;
constexpr double kSmallestTableWidth = 480;
constexpr double kSmallestTableHeight = 120;

}  // namespace

MacReviewWindow::MacReviewWindow(ReviewWindowEvents events, const MacPreviewPanel& previewPanel)
    : table_([[HarborReviewTable alloc] initWithEvents:events]),
      deleteButtonClicked_([[HarborActionTarget alloc]
          initWithAction:[clicked = std::move(events.deleteButtonClicked)](NSControl*) { clicked(); }]),
      noticeButtonClicked_([[HarborActionTarget alloc]
          initWithAction:[clicked = std::move(events.noticeButtonClicked)](NSControl*) { clicked(); }]),
      notice_([NSTextField wrappingLabelWithString:@""]),
      fileSelectedInfo_([NSTextField labelWithString:@""]),
      deleteDetailedInfo_([NSTextField labelWithString:@""]),
      spinnerMessage_([NSTextField labelWithString:@""]),
      deleteButton_([NSButton buttonWithTitle:@"Delete"
                                       target:deleteButtonClicked_
                                       action:@selector(controlActed:)]),
      noticeButton_([NSButton buttonWithTitle:@""
                                       target:noticeButtonClicked_
                                       action:@selector(controlActed:)]),
      tableTop_(nil),
      spinner_([[NSProgressIndicator alloc] init]),
      window_(viewController(previewPanel.source()), ViewWindow::Sizing::resizable,
              std::move(events.viewDidDisappear)) {}

NSViewController* MacReviewWindow::viewController(HarborPreviewSource* source) {
  NSView* const view = [[NSView alloc] initWithFrame:NSMakeRect(0, 0, kViewWidth, kViewHeight)];
  NSScrollView* const scrollView = table_.scrollView;
  for (NSView* part in @[
         notice_, noticeButton_, scrollView, fileSelectedInfo_, deleteDetailedInfo_, deleteButton_, spinner_,
         spinnerMessage_
       ]) {
    part.translatesAutoresizingMaskIntoConstraints = NO;
    [view addSubview:part];
  }
  spinner_.style = NSProgressIndicatorStyleSpinning;
  spinner_.hidden = YES;
  spinnerMessage_.hidden = YES;
  notice_.hidden = YES;
  noticeButton_.hidden = YES;
  tableTop_ = [scrollView.topAnchor constraintEqualToAnchor:view.topAnchor constant:kMargin];
  [NSLayoutConstraint activateConstraints:@[
    [notice_.topAnchor constraintEqualToAnchor:view.topAnchor constant:kMargin],
    [notice_.leadingAnchor constraintEqualToAnchor:scrollView.leadingAnchor],
    [notice_.trailingAnchor constraintLessThanOrEqualToAnchor:noticeButton_.leadingAnchor constant:-kGap],
    [noticeButton_.topAnchor constraintEqualToAnchor:view.topAnchor constant:kMargin],
    [noticeButton_.trailingAnchor constraintEqualToAnchor:scrollView.trailingAnchor],
    tableTop_,
    [scrollView.leadingAnchor constraintEqualToAnchor:view.leadingAnchor constant:kMargin],
    [scrollView.trailingAnchor constraintEqualToAnchor:view.trailingAnchor constant:-kMargin],
    [scrollView.bottomAnchor constraintEqualToAnchor:fileSelectedInfo_.topAnchor constant:-kGap],
    [scrollView.widthAnchor constraintGreaterThanOrEqualToConstant:kSmallestTableWidth],
    [scrollView.heightAnchor constraintGreaterThanOrEqualToConstant:kSmallestTableHeight],
    [fileSelectedInfo_.leadingAnchor constraintEqualToAnchor:scrollView.leadingAnchor],
    [fileSelectedInfo_.bottomAnchor constraintEqualToAnchor:deleteDetailedInfo_.topAnchor constant:-kGap],
    [deleteDetailedInfo_.leadingAnchor constraintEqualToAnchor:scrollView.leadingAnchor],
    [deleteDetailedInfo_.trailingAnchor constraintLessThanOrEqualToAnchor:deleteButton_.leadingAnchor
                                                                 constant:-kGap],
    [deleteDetailedInfo_.bottomAnchor constraintEqualToAnchor:view.bottomAnchor constant:-kMargin],
    [deleteButton_.trailingAnchor constraintEqualToAnchor:scrollView.trailingAnchor],
    [deleteButton_.bottomAnchor constraintEqualToAnchor:view.bottomAnchor constant:-kMargin],
    [spinner_.centerXAnchor constraintEqualToAnchor:scrollView.centerXAnchor],
    [spinner_.centerYAnchor constraintEqualToAnchor:scrollView.centerYAnchor],
    [spinnerMessage_.centerXAnchor constraintEqualToAnchor:scrollView.centerXAnchor],
    [spinnerMessage_.topAnchor constraintEqualToAnchor:spinner_.bottomAnchor constant:kGap],
  ]];
  HarborReviewViewController* const controller = [[HarborReviewViewController alloc] initWithView:view];
  controller.previewSource = source;
  return controller;
}

void MacReviewWindow::setTitle(const std::string& title) {
  window_.setTitle(title);
}

void MacReviewWindow::appendRows(std::vector<ReviewRow> rows) {
  [table_ appendRows:std::move(rows)];
}

void MacReviewWindow::updateRows(std::vector<ReviewRowUpdate> updates) {
  [table_ updateRows:std::move(updates)];
}

void MacReviewWindow::setFileSelectedInfo(const std::optional<std::string>& text) {
  fileSelectedInfo_.hidden = !text;
  fileSelectedInfo_.stringValue = shownString(text.value_or(""));
}

void MacReviewWindow::setDeleteDetailedInfo(const std::string& text) {
  deleteDetailedInfo_.stringValue = shownString(text);
}

void MacReviewWindow::setDeleteButton(DeleteButton state) {
  deleteButton_.hidden = state == DeleteButton::hidden;
  deleteButton_.enabled = state == DeleteButton::enabled;
}

void MacReviewWindow::setSpinner(const std::optional<std::string>& message) {
  spinner_.hidden = !message;
  spinnerMessage_.hidden = !message;
  spinnerMessage_.stringValue = shownString(message.value_or(""));
  if (message) {
    [spinner_ startAnimation:nil];
  } else {
    [spinner_ stopAnimation:nil];
  }
}

void MacReviewWindow::setNotice(const std::optional<ReviewNotice>& notice) {
  notice_.hidden = !notice;
  notice_.stringValue = shownString(notice ? notice->text : "");
  noticeButton_.hidden = !notice || notice->buttonTitle.empty();
  noticeButton_.title = shownString(notice ? notice->buttonTitle : "");
  tableTop_.constant = notice ? kMargin + kNoticeHeight : kMargin;
}

void MacReviewWindow::showWindow() {
  window_.showWindow();
}

void MacReviewWindow::orderFrontRegardless() {
  window_.orderFrontRegardless();
}

std::unique_ptr<ReviewWindow> MacReviewWindows::make(ReviewWindowEvents events) {
  return std::make_unique<MacReviewWindow>(std::move(events), previewPanel_);
}

}  // namespace harbor
