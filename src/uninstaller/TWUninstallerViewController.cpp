#include "uninstaller/TWUninstallerViewController.h"

#include <sys/stat.h>

#include <algorithm>
#include <numeric>
#include <utility>

#include "base/ByteCount.h"
#include "base/PathBelow.h"

namespace harbor {
namespace {

constexpr const char* kHistorySuffix = " [Uninstallation History]";
constexpr const char* kSpinnerMessage = "Looking for related files…";
constexpr const char* kNoFilesSelected = "No Files Selected (Zero KB)";
constexpr const char* kFreshStatus = "Please review each file before deleting.";
constexpr const char* kLoadingRecordStatus =
    "Please delete the file(s) yourself. Files already deleted have been disabled.";
constexpr const char* kFilesLeftStatus =
    "Please review each file before deleting. Files already deleted have been disabled.";
constexpr const char* kOpenSoftwareCentre = "Open Software Centre";
constexpr const char* kNoFilesLeftStatus = "There are no files left to be deleted.";

struct Outcome {
  const char* title;
  const char* text;
  const char* status;
};

constexpr Outcome kSuccessful{"Successful",
                              "All of the selected files have been successfully removed. To reinspect this "
                              "uninstallation, please check the Uninstallation History from the Uninstall "
                              "Applications menu.",
                              "All selected files have been successfully deleted."};
constexpr Outcome kPartly{
    "Warning",
    "Some of the selected files could not be deleted due to lack of permission. To "
    "reinspect this uninstallation, please check the Uninstallation History from the "
    "Uninstall Applications menu.",
    "Some selected files could not be deleted. Please delete the remaining ones yourself."};
constexpr Outcome kUnsuccessful{
    "Unsuccessful",
    "None of the selected files could be deleted due to lack of permission. To "
    "reinspect this uninstallation, please check the Uninstallation History from the "
    "Uninstall Applications menu.",
    "No selected files could be deleted. Please manually delete them yourself."};

// "the package "geany"".
std::string described(const PackageOwner& owner) {
  switch (owner.kind) {
    case PackageOwner::Kind::package:
      return "the package \"" + owner.name + "\"";
    case PackageOwner::Kind::flatpak:
      return "the Flatpak \"" + owner.name + "\"";
    case PackageOwner::Kind::snap:
      return "the snap \"" + owner.name + "\"";
  }
  return {};
}

// A folder as a reader of the item's row knows it: by its name where only one folder of the item's path has
// that, else by its path.
std::string nameOfFolder(const std::string& folder, const std::string& item) {
  const std::string name = lastPathComponent(folder);
  const std::string component = "/" + name + "/";
  const std::string within = item + "/";
  const std::size_t first = within.find(component);
  const bool isOnlyOne = first != std::string::npos && within.find(component, first + 1) == std::string::npos;
  return isOnlyOne && isBelow(item, folder) ? name : folder;
}

}  // namespace

TWUninstallerViewController::TWUninstallerViewController(const Services& services, UninstalledApp record,
                                                         std::string path, std::string displayName,
                                                         Origin origin)
    : appPath(std::move(path)),
      uninstalledApp(std::make_shared<UninstalledApp>(std::move(record))),
      isAlreadyUninstalled(origin == Origin::history),
      isHistory(origin == Origin::history),
      services_(services),
      displayName_(std::move(displayName)),
      selection_(uninstalledApp->appRelatedData),
      remarks_(uninstalledApp->appRelatedData.size()) {}

std::shared_ptr<TWUninstallerViewController> TWUninstallerViewController::forScan(
    const Services& services, ScanRequest request, const std::string& displayName,
    std::function<void()> disappeared) {
  UninstalledApp record{FileUrl::fromPath(request.bundlePath), {}};
  std::shared_ptr<TWUninstallerViewController> controller(new TWUninstallerViewController(
      services, std::move(record), request.bundlePath, displayName, Origin::scan));
  if (!controller->makeWindow(displayName, std::move(disappeared))) return nullptr;
  controller->startScan(std::move(request));
  return controller;
}

std::shared_ptr<TWUninstallerViewController> TWUninstallerViewController::forHistory(
    const Services& services, const UninstalledApp& record, const std::string& displayName,
    std::function<void()> disappeared) {
  std::string path = record.appName ? record.appName->path : std::string();
  std::shared_ptr<TWUninstallerViewController> controller(
      new TWUninstallerViewController(services, record, std::move(path), displayName, Origin::history));
  if (!controller->makeWindow(displayName + kHistorySuffix, std::move(disappeared))) return nullptr;
  controller->loadRecord();
  return controller;
}

bool TWUninstallerViewController::makeWindow(const std::string& title, std::function<void()> disappeared) {
  // The window is the controller's own, so its events never come after the controller has gone.
  window_ = services_.reviewWindows.make(
      {[this](const ReviewSelection::Rows& rows, bool isSelected) { selectionChanged(rows, isSelected); },
       [this](std::size_t row) {
         if (const auto& url = uninstalledApp->appRelatedData[row].filePath)
           services_.workspace.reveal({*url});
       },
       [this](std::size_t row) {
         previewItem = uninstalledApp->appRelatedData[row].filePath;
         if (previewItem) services_.previewPanel.preview(*previewItem);
       },
       [this] { deleteButtonClicked(); },
       [this, disappeared = std::move(disappeared)] {
         const auto self = shared_from_this();
         scan_.reset();
         disappeared();
         openWindow_.reset();
       },
       [this] { services_.packages.showSoftware(appPath); }});
  if (!window_) return false;
  window_->setTitle(title);
  return true;
}

void TWUninstallerViewController::orderFront() {
  if (isAlreadyUninstalled) {
    showWhatIsLeft();
    showAllRows();
  }
  window_->orderFrontRegardless();
}

void TWUninstallerViewController::loadRecord() {
  window_->setDeleteButton(DeleteButton::hidden);
  window_->setDeleteDetailedInfo(kLoadingRecordStatus);
  window_->setFileSelectedInfo(std::nullopt);
  window_->setSpinner(std::nullopt);
  showWhatIsLeft();
  std::vector<ReviewRow> rows;
  rows.reserve(remarks_.size());
  for (std::size_t row = 0; row < remarks_.size(); ++row)
    rows.push_back(rowOf(row));
  window_->appendRows(std::move(rows));
  openWindow_ = services_.openWindows.open();
  window_->showWindow();
  services_.runLoop.async([weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->warnAboutTooManyFiles();
  });
}

void TWUninstallerViewController::startScan(ScanRequest request) {
  window_->setDeleteButton(DeleteButton::disabled);
  window_->setDeleteDetailedInfo(kFreshStatus);
  window_->setFileSelectedInfo(kNoFilesSelected);
  window_->setSpinner(kSpinnerMessage);
  openWindow_ = services_.openWindows.open();
  window_->showWindow();
  scan_ = std::make_unique<RelatedFileScan>(
      services_.runLoop, services_.text, std::move(request),
      [this](std::vector<ScannedItem> items) { append(std::move(items)); }, [this] { scanFinished(); });
}

void TWUninstallerViewController::append(std::vector<ScannedItem> items) {
  using NewRow = ReviewSelection::NewRow;
  const std::size_t first = remarks_.size();
  std::vector<NewRow> added;
  for (ScannedItem& item : items) {
    if (item.owner) tellOwner(remarks_.size(), *item.owner);
    remarks_.push_back(
        {std::move(item.caution), item.owner ? std::optional(described(*item.owner)) : std::nullopt});
    added.push_back({std::move(item.data), std::move(item.place),
                     item.owner ? NewRow::Protection::full : NewRow::Protection::none});
  }
  const ReviewSelection::Sum before = selection_.sum();
  ReviewSelection::Rows changed = selection_.append(std::move(added));
  std::erase_if(changed, [first](std::size_t row) { return row >= first; });
  std::vector<ReviewRow> rows;
  for (std::size_t row = first; row < remarks_.size(); ++row)
    rows.push_back(rowOf(row));
  window_->appendRows(std::move(rows));
  showRows(changed);
  if (selection_.sum() != before) showSummary();
}

void TWUninstallerViewController::tellOwner(std::size_t row, const PackageOwner& owner) {
  if (std::exchange(isOwnerTold_, true)) return;
  const std::string name = "\"" + displayName_ + "\"";
  const std::string subject = row == 0 ? name : "The program of " + name;
  window_->setNotice(ReviewNotice{subject + " came with " + described(owner) +
                                      ". What belongs to that is listed but not moved to the Trash: it goes "
                                      "when you remove it with the system's software management.",
                                  services_.packages.canShowSoftware() ? kOpenSoftwareCentre : ""});
}

void TWUninstallerViewController::scanFinished() {
  window_->setSpinner(std::nullopt);
  window_->setDeleteButton(DeleteButton::enabled);
  warnAboutTooManyFiles();
}

void TWUninstallerViewController::warnAboutTooManyFiles() {
  if (uninstalledApp->appRelatedData.size() <= relatedFilesUpperLimit) return;
  services_.dialog.show("", "I Understand", "Warning! Too many files detected in this scan!",
                        "Note that identifying the related files of an app is not an exact science. So "
                        "please carefully review all the "
                        "listed files and deselect those that do not seem to be related to '" +
                            stemOfPath(appPath) +
                            "' before finally choosing to delete. If you are unsure, then it may be safer to "
                            "not uninstall this app now.",
                        "");
}

void TWUninstallerViewController::selectionChanged(const ReviewSelection::Rows& rows, bool isSelected) {
  const ReviewSelection::Rows changed = isSelected ? selection_.tick(rows) : selection_.clear(rows);
  if (changed.empty()) return;
  showRows(changed);
  showSummary();
}

void TWUninstallerViewController::showSummary() {
  if (isHistory) return;
  const auto [count, bytes] = selection_.sum();
  window_->setFileSelectedInfo(std::to_string(count) +
                               (count == 1 ? " file selected (" : " files selected (") +
                               formatByteCount(bytes) + ")");
}

// Asked again at the last moment, for the folder and for every row in it: what a package owns is the
// package's, whoever selected it. And a link that has come into the way must not lead to something else than
// what was shown.
bool TWUninstallerViewController::mayBeTrashed(std::size_t row) const {
  for (const std::size_t other : selection_.atOrBelow(row)) {
    if (services_.packages.ownerOf(uninstalledApp->appRelatedData[other].filePath->path)) return false;
  }
  return placeOfRelatedFile(selection_.place(row)) == selection_.place(row);
}

// By their places, so that what is reached through a link does not depend on whether that has gone before.
void TWUninstallerViewController::trashSelectedItems() {
  for (const std::size_t row : selection_.outermost()) {
    if (mayBeTrashed(row)) {
      services_.fileManager.trashItem(
          {selection_.place(row), uninstalledApp->appRelatedData[row].filePath->isDirectory});
    }
  }
}

void TWUninstallerViewController::deleteButtonClicked() {
  const auto self = shared_from_this();
  // Once before anything moves: should the program end in between, the record of what was to go is not lost.
  services_.uninstaller.saveUninstalledApp(*uninstalledApp);
  trashSelectedItems();
  services_.uninstaller.saveUninstalledApp(*uninstalledApp);
  window_->setDeleteButton(DeleteButton::disabled);

  lookForItems();
  bool anyDeleted = false;
  bool anyFailed = false;
  for (std::size_t row = 0; row < remarks_.size(); ++row) {
    const AppRelatedData& item = uninstalledApp->appRelatedData[row];
    if (!item.isSelected || !item.filePath) continue;
    if (remarks_[row].isGone) {
      anyDeleted = true;
      services_.applications.remove(item.filePath->path);
    } else {
      anyFailed = true;
    }
  }
  const Outcome& outcome = !anyDeleted ? kUnsuccessful : anyFailed ? kPartly : kSuccessful;
  services_.dialog.show("", "OK", outcome.title, outcome.text, "");
  window_->setDeleteDetailedInfo(outcome.status);
  window_->setFileSelectedInfo(kNoFilesSelected);
  isAlreadyUninstalled = true;
  showAllRows();
}

// A link counts whether or not it leads anywhere.
bool TWUninstallerViewController::itemExists(std::size_t row) const {
  struct stat status;
  return !selection_.place(row).empty() && ::lstat(selection_.place(row).c_str(), &status) == 0;
}

void TWUninstallerViewController::lookForItems() {
  for (std::size_t row = 0; row < remarks_.size(); ++row)
    remarks_[row].isGone = !itemExists(row);
}

void TWUninstallerViewController::showWhatIsLeft() {
  lookForItems();
  const bool isAnyLeft =
      std::any_of(remarks_.begin(), remarks_.end(), [](const Remarks& remarks) { return !remarks.isGone; });
  window_->setDeleteDetailedInfo(isAnyLeft ? kFilesLeftStatus : kNoFilesLeftStatus);
}

std::optional<std::string> TWUninstallerViewController::protectionOf(std::size_t row) const {
  constexpr const char* kGoesWhenRemoved = " and goes when that is removed.";
  if (remarks_[row].owner) return "This belongs to " + *remarks_[row].owner + kGoesWhenRemoved;
  const auto inner = selection_.protectedRowBelow(row);
  if (!inner) return std::nullopt;
  return "This holds \"" + lastPathComponent(uninstalledApp->appRelatedData[*inner].filePath->path) +
         "\", which belongs to " + *remarks_[*inner].owner + kGoesWhenRemoved;
}

std::optional<std::string> TWUninstallerViewController::companionOf(std::size_t row) const {
  const auto outer = selection_.goesWith(row);
  if (!outer) return std::nullopt;
  const auto& items = uninstalledApp->appRelatedData;
  return "Goes with " + nameOfFolder(items[*outer].filePath->path, items[row].filePath->path);
}

ReviewRow TWUninstallerViewController::rowOf(std::size_t row) const {
  const AppRelatedData& item = uninstalledApp->appRelatedData[row];
  return {item.filePath,         item.fileSize,     item.isSelected, !remarks_[row].isGone,
          remarks_[row].caution, protectionOf(row), companionOf(row)};
}

void TWUninstallerViewController::showRows(const ReviewSelection::Rows& rows) {
  std::vector<ReviewRowUpdate> updates;
  updates.reserve(rows.size());
  for (const std::size_t row : rows)
    updates.push_back({row, rowOf(row)});
  window_->updateRows(std::move(updates));
}

void TWUninstallerViewController::showAllRows() {
  ReviewSelection::Rows all(remarks_.size());
  std::iota(all.begin(), all.end(), std::size_t{0});
  showRows(all);
}

}  // namespace harbor
