#import "platform/macos/ReviewTable.h"

#include <array>
#include <iterator>

#include "base/ByteCount.h"
#import "platform/macos/MacValues.h"

namespace {

struct Column {
  NSUserInterfaceItemIdentifier __unsafe_unretained identifier;
  NSString* __unsafe_unretained title;
  CGFloat width;
};

constexpr std::size_t kNameColumn = 1;

const std::array<Column, 6>& columns() {
  static const std::array<Column, 6> table{{{@"CheckboxIDCellView", @"Delete", 50},
                                            {@"NameIDCellView", @"Name", 220},
                                            {@"FolderIDCellView", @"Folder", 260},
                                            {@"SizeIDCellView", @"Size", 80},
                                            {@"RevealIDCellView", @"", 40},
                                            {@"QuickLookIDCellView", @"", 40}}};
  return table;
}

std::string folderOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == 0 || slash == std::string::npos ? "/" : path.substr(0, slash);
}

}  // namespace

@implementation HarborReviewTable {
  NSTableView* _tableView;
  std::vector<harbor::ReviewRow> _rows;
  harbor::ReviewWindowEvents _events;
}

- (instancetype)initWithEvents:(const harbor::ReviewWindowEvents&)events {
  if (!(self = [super init])) return nil;
  _events = events;
  _tableView = [[NSTableView alloc] init];
  for (const Column& column : columns()) {
    NSTableColumn* const made = [[NSTableColumn alloc] initWithIdentifier:column.identifier];
    made.title = column.title;
    made.width = column.width;
    [_tableView addTableColumn:made];
  }
  _tableView.dataSource = self;
  _tableView.delegate = self;
  _scrollView = [[NSScrollView alloc] init];
  _scrollView.hasVerticalScroller = YES;
  _scrollView.documentView = _tableView;
  return self;
}

- (void)setRows:(std::vector<harbor::ReviewRow>)rows {
  const bool isSameCount = rows.size() == _rows.size() && !rows.empty();
  _rows = std::move(rows);
  // The same rows in another state keep the table's place.
  if (isSameCount) {
    [_tableView
        reloadDataForRowIndexes:[NSIndexSet indexSetWithIndexesInRange:NSMakeRange(0, _rows.size())]
                  columnIndexes:[NSIndexSet indexSetWithIndexesInRange:NSMakeRange(0, columns().size())]];
  } else {
    [_tableView reloadData];
  }
}

- (void)appendRows:(std::vector<harbor::ReviewRow>)rows {
  _rows.insert(_rows.end(), std::make_move_iterator(rows.begin()), std::make_move_iterator(rows.end()));
  [_tableView noteNumberOfRowsChanged];
}

- (NSInteger)numberOfRowsInTableView:(NSTableView*)tableView {
  return static_cast<NSInteger>(_rows.size());
}

- (NSView*)tableView:(NSTableView*)tableView
    viewForTableColumn:(NSTableColumn*)tableColumn
                   row:(NSInteger)row {
  NSUserInterfaceItemIdentifier const identifier = tableColumn.identifier;
  const auto index = static_cast<std::size_t>(row);
  if (!identifier || index >= _rows.size()) return nil;
  NSControl* const made = [tableView makeViewWithIdentifier:identifier owner:nil];
  NSControl* const cell = made ? made : [self cellWithIdentifier:identifier];
  [self show:_rows[index] in:cell];
  cell.tag = row;
  return cell;
}

- (NSControl*)cellWithIdentifier:(NSUserInterfaceItemIdentifier)identifier {
  NSControl* cell = nil;
  if ([identifier isEqualToString:@"CheckboxIDCellView"]) {
    cell = [NSButton checkboxWithTitle:@"" target:self action:@selector(checkboxClicked:)];
  } else if ([identifier isEqualToString:@"RevealIDCellView"]) {
    cell = [self buttonWithImage:NSImageNameRevealFreestandingTemplate
                            help:@"Show in Finder"
                          action:@selector(revealClicked:)];
  } else if ([identifier isEqualToString:@"QuickLookIDCellView"]) {
    cell = [self buttonWithImage:NSImageNameQuickLookTemplate
                            help:@"Show what is in it"
                          action:@selector(quickLookClicked:)];
  } else {
    NSTextField* const label = [NSTextField labelWithString:@""];
    label.lineBreakMode = NSLineBreakByTruncatingMiddle;
    cell = label;
  }
  cell.identifier = identifier;
  return cell;
}

- (NSButton*)buttonWithImage:(NSImageName)name help:(NSString*)help action:(SEL)action {
  NSImage* const image = [NSImage imageNamed:name];
  NSButton* const button = image ? [NSButton buttonWithImage:image target:self action:action]
                                 : [NSButton buttonWithTitle:help target:self action:action];
  button.toolTip = help;
  [button setAccessibilityLabel:help];
  return button;
}

- (void)show:(const harbor::ReviewRow&)row in:(NSControl*)cell {
  NSUserInterfaceItemIdentifier const identifier = cell.identifier;
  const bool isUsable = row.isEnabled && row.filePath;
  cell.enabled = isUsable;
  if ([identifier isEqualToString:@"CheckboxIDCellView"]) {
    static_cast<NSButton*>(cell).state = row.isSelected ? NSControlStateValueOn : NSControlStateValueOff;
    NSString* const name =
        harbor::shownString(row.filePath ? harbor::lastPathComponent(row.filePath->path) : "");
    [cell setAccessibilityLabel:[@"Select " stringByAppendingString:name]];
  } else if ([identifier isEqualToString:columns()[kNameColumn].identifier]) {
    NSString* const sign = row.caution ? @"\u26A0\uFE0E " : @"";
    cell.stringValue =
        [sign stringByAppendingString:row.filePath
                                          ? harbor::shownString(harbor::lastPathComponent(row.filePath->path))
                                          : @"(no file)"];
    cell.toolTip = row.caution    ? harbor::shownString(*row.caution)
                   : row.filePath ? harbor::shownString(row.filePath->path)
                                  : nil;
    [cell setAccessibilityHelp:row.caution ? harbor::shownString(*row.caution) : nil];
  } else if ([identifier isEqualToString:@"FolderIDCellView"]) {
    cell.stringValue = row.filePath ? harbor::shownString(folderOf(row.filePath->path)) : @"";
  } else if ([identifier isEqualToString:@"SizeIDCellView"]) {
    cell.stringValue = row.filePath ? harbor::shownString(harbor::formatByteCount(row.fileSize)) : @"";
  }
}

// Events come after the click has been handled, never from within it.
- (void)checkboxClicked:(NSButton*)sender {
  const auto row = static_cast<std::size_t>(sender.tag);
  const bool isSelected = sender.state == NSControlStateValueOn;
  if (row >= _rows.size()) return;
  _rows[row].isSelected = isSelected;
  __weak HarborReviewTable* const weakSelf = self;
  dispatch_async(dispatch_get_main_queue(), ^{
    [weakSelf reportRow:row selected:isSelected];
  });
}

- (void)reportRow:(std::size_t)row selected:(bool)isSelected {
  const auto changed = _events.selectionChanged;
  if (changed) changed(row, isSelected);
}

- (void)revealClicked:(NSButton*)sender {
  const auto clicked = _events.revealClicked;
  if (clicked) clicked(static_cast<std::size_t>(sender.tag));
}

- (void)quickLookClicked:(NSButton*)sender {
  const auto clicked = _events.quickLookClicked;
  if (clicked) clicked(static_cast<std::size_t>(sender.tag));
}

@end
