#import "platform/macos/ReviewTable.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <numeric>
#include <optional>
#include <string>
#include <utility>

#include "base/ByteCount.h"
#import "platform/macos/MacValues.h"

namespace {

// What a column is sorted by: the number, then the text.
using SortKey = std::pair<std::uint64_t, std::string>;

std::string folderOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == 0 || slash == std::string::npos ? "/" : path.substr(0, slash);
}

std::string lowercased(const std::string& text) {
  return harbor::textOf(harbor::shownString(text).lowercaseString);
}

SortKey keyOfCheckbox(const harbor::ReviewRow& row) {
  return {row.isSelected, ""};
}

SortKey keyOfName(const harbor::ReviewRow& row) {
  return {0, row.filePath ? lowercased(harbor::lastPathComponent(row.filePath->path)) : ""};
}

SortKey keyOfFolder(const harbor::ReviewRow& row) {
  return {0, row.filePath ? lowercased(folderOf(row.filePath->path)) : ""};
}

SortKey keyOfSize(const harbor::ReviewRow& row) {
  return {row.fileSize, ""};
}

// What is said about the row beside its item, each on a line.
std::string remarks(const harbor::ReviewRow& row, const std::optional<std::string>& protection) {
  std::string text;
  for (const auto& remark : {protection, row.goesWith, row.caution}) {
    if (remark) text += (text.empty() ? "" : "\n") + *remark;
  }
  return text;
}

// The remarks, which assistive technologies get as well, or else the other text.
void showTip(NSControl* cell, const std::string& remarks, const std::string& otherwise) {
  const std::string& tip = remarks.empty() ? otherwise : remarks;
  cell.toolTip = tip.empty() ? nil : harbor::shownString(tip);
  [cell setAccessibilityHelp:remarks.empty() ? nil : harbor::shownString(remarks)];
}

struct Column {
  NSUserInterfaceItemIdentifier __unsafe_unretained identifier;
  NSString* __unsafe_unretained title;
  CGFloat width;
  SortKey (*key)(const harbor::ReviewRow& row);  // null: the table is not sorted by this column
};

constexpr std::size_t kNameColumn = 1;

const std::array<Column, 6>& columns() {
  static const std::array<Column, 6> table{{{@"CheckboxIDCellView", @"Delete", 50, keyOfCheckbox},
                                            {@"NameIDCellView", @"Name", 220, keyOfName},
                                            {@"FolderIDCellView", @"Folder", 260, keyOfFolder},
                                            {@"SizeIDCellView", @"Size", 80, keyOfSize},
                                            {@"RevealIDCellView", @"", 40, nullptr},
                                            {@"QuickLookIDCellView", @"", 40, nullptr}}};
  return table;
}

}  // namespace

@implementation HarborReviewTable {
  NSTableView* _tableView;
  std::vector<harbor::ReviewRow> _rows;
  std::vector<std::size_t> _order;  // which of the rows stands in each line of the table
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
    if (column.key)
      made.sortDescriptorPrototype = [NSSortDescriptor sortDescriptorWithKey:column.identifier ascending:YES];
    [_tableView addTableColumn:made];
  }
  _tableView.dataSource = self;
  _tableView.delegate = self;
  _scrollView = [[NSScrollView alloc] init];
  _scrollView.hasVerticalScroller = YES;
  _scrollView.documentView = _tableView;
  return self;
}

- (void)appendRows:(std::vector<harbor::ReviewRow>)rows {
  _rows.insert(_rows.end(), std::make_move_iterator(rows.begin()), std::make_move_iterator(rows.end()));
  [self sort];
  // New rows stand at the end only while the table is not sorted.
  if (_tableView.sortDescriptors.count > 0) {
    [_tableView reloadData];
  } else {
    [_tableView noteNumberOfRowsChanged];
  }
}

- (void)updateRows:(std::vector<harbor::ReviewRowUpdate>)updates {
  std::vector<bool> isUpdated(_rows.size());
  for (harbor::ReviewRowUpdate& update : updates) {
    _rows[update.row] = std::move(update.now);
    isUpdated[update.row] = true;
  }
  NSMutableIndexSet* const lines = [NSMutableIndexSet indexSet];
  for (std::size_t line = 0; line < _order.size(); ++line) {
    if (isUpdated[_order[line]]) [lines addIndex:line];
  }
  [_tableView
      reloadDataForRowIndexes:lines
                columnIndexes:[NSIndexSet indexSetWithIndexesInRange:NSMakeRange(0, columns().size())]];
}

// Only the table's lines are sorted; without a sorted column they stand in the order of the rows.
- (void)sort {
  _order.resize(_rows.size());
  std::iota(_order.begin(), _order.end(), std::size_t{0});
  NSSortDescriptor* const descriptor = _tableView.sortDescriptors.firstObject;
  NSString* const identifier = descriptor.key;
  for (const Column& column : columns()) {
    if (!column.key || ![column.identifier isEqualToString:identifier ? identifier : @""]) continue;
    std::vector<SortKey> keys;
    for (const harbor::ReviewRow& row : _rows)
      keys.push_back(column.key(row));
    const bool isAscending = descriptor.ascending;
    std::stable_sort(_order.begin(), _order.end(), [&](std::size_t a, std::size_t b) {
      return isAscending ? keys[a] < keys[b] : keys[b] < keys[a];
    });
  }
}

// A header's clicks sort upwards, downwards and no more.
- (void)tableView:(NSTableView*)tableView
    sortDescriptorsDidChange:(NSArray<NSSortDescriptor*>*)oldDescriptors {
  NSSortDescriptor* const now = tableView.sortDescriptors.firstObject;
  NSSortDescriptor* const before = oldDescriptors.firstObject;
  NSString* const key = now.key;
  if (key && [key isEqual:before.key] && now.ascending && !before.ascending) {
    // This comes here once more.
    tableView.sortDescriptors = @[];
    return;
  }
  [self sort];
  [tableView reloadData];
}

- (NSInteger)numberOfRowsInTableView:(NSTableView*)tableView {
  return static_cast<NSInteger>(_rows.size());
}

- (NSView*)tableView:(NSTableView*)tableView
    viewForTableColumn:(NSTableColumn*)tableColumn
                   row:(NSInteger)row {
  NSUserInterfaceItemIdentifier const identifier = tableColumn.identifier;
  const auto line = static_cast<std::size_t>(row);
  if (!identifier || line >= _order.size()) return nil;
  const std::size_t index = _order[line];
  NSControl* const made = [tableView makeViewWithIdentifier:identifier owner:nil];
  NSControl* const cell = made ? made : [self cellWithIdentifier:identifier];
  [self show:_rows[index] in:cell];
  cell.tag = static_cast<NSInteger>(index);
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
    // A file's name may hold line breaks.
    label.usesSingleLineMode = YES;
    if ([identifier isEqualToString:@"SizeIDCellView"]) label.alignment = NSTextAlignmentRight;
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
    cell.enabled = isUsable && !row.protection;
    showTip(cell, remarks(row, row.protection), "");
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
    showTip(cell, remarks(row, std::nullopt), row.filePath ? row.filePath->path : "");
  } else if ([identifier isEqualToString:@"FolderIDCellView"]) {
    cell.stringValue = row.filePath ? harbor::shownString(folderOf(row.filePath->path)) : @"";
  } else if ([identifier isEqualToString:@"SizeIDCellView"]) {
    cell.stringValue = row.filePath ? harbor::shownString(harbor::formatByteCount(row.fileSize)) : @"";
  }
}

// Events come after the click has been handled, never from within it. The box shows the row's own state until
// the row comes back.
- (void)checkboxClicked:(NSButton*)sender {
  const auto row = static_cast<std::size_t>(sender.tag);
  const bool isSelected = sender.state == NSControlStateValueOn;
  if (row >= _rows.size()) return;
  sender.state = _rows[row].isSelected ? NSControlStateValueOn : NSControlStateValueOff;
  __weak HarborReviewTable* const weakSelf = self;
  harbor::onMainRunLoop([weakSelf, row, isSelected] { [weakSelf reportRow:row selected:isSelected]; });
}

- (void)reportRow:(std::size_t)row selected:(bool)isSelected {
  const auto changed = _events.selectionChanged;
  if (changed) changed({row}, isSelected);
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
