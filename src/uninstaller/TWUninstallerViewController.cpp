#include "uninstaller/TWUninstallerViewController.h"

#include <sys/stat.h>

#include <algorithm>
#include <utility>

#include "base/ByteCount.h"

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

// Whether there is something at the path; a link counts whether or not it leads anywhere.
bool itemExists(const std::optional<FileUrl>& url) {
  struct stat status;
  return url && ::lstat(url->path.c_str(), &status) == 0;
}

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

std::string selectionSummary(const std::vector<AppRelatedData>& items) {
  std::size_t count = 0;
  std::uint64_t bytes = 0;
  for (const AppRelatedData& item : items) {
    if (!item.isSelected) continue;
    ++count;
    bytes += item.fileSize;
  }
  return std::to_string(count) + (count == 1 ? " file selected (" : " files selected (") +
         formatByteCount(bytes) + ")";
}

}  // namespace

TWUninstallerViewController::TWUninstallerViewController(const Services& services,
                                                         std::shared_ptr<UninstalledApp> record,
                                                         std::string path, std::string displayName,
                                                         Origin origin)
    : appPath(std::move(path)),
      uninstalledApp(std::move(record)),
      isAlreadyUninstalled(origin == Origin::history),
      isHistory(origin == Origin::history),
      services_(services),
      displayName_(std::move(displayName)),
      remarks_(uninstalledApp->appRelatedData.size()) {}

std::shared_ptr<TWUninstallerViewController> TWUninstallerViewController::forScan(
    const Services& services, ScanRequest request, const std::string& displayName,
    std::function<void()> disappeared) {
  auto record = std::make_shared<UninstalledApp>();
  record->appName = FileUrl::fromPath(request.bundlePath);
  std::shared_ptr<TWUninstallerViewController> controller(new TWUninstallerViewController(
      services, std::move(record), request.bundlePath, displayName, Origin::scan));
  if (!controller->makeWindow(displayName, std::move(disappeared))) return nullptr;
  controller->startScan(std::move(request));
  return controller;
}

std::shared_ptr<TWUninstallerViewController> TWUninstallerViewController::forHistory(
    const Services& services, std::shared_ptr<UninstalledApp> record, const std::string& displayName,
    std::function<void()> disappeared) {
  std::string path = record->appName ? record->appName->path : std::string();
  std::shared_ptr<TWUninstallerViewController> controller(new TWUninstallerViewController(
      services, std::move(record), std::move(path), displayName, Origin::history));
  if (!controller->makeWindow(displayName + kHistorySuffix, std::move(disappeared))) return nullptr;
  controller->loadRecord();
  return controller;
}

bool TWUninstallerViewController::makeWindow(const std::string& title, std::function<void()> disappeared) {
  // The window is the controller's own, so its events never come after the controller has gone.
  window_ = services_.reviewWindows.make(
      {[this](std::size_t row, bool isSelected) { selectionChanged(row, isSelected); },
       [this](std::size_t row) {
         if (!hasItem(row)) return;
         if (const auto& url = uninstalledApp->appRelatedData[row].filePath)
           services_.workspace.reveal({*url});
       },
       [this](std::size_t row) {
         if (!hasItem(row)) return;
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
  window_->orderFrontRegardless();
}

void TWUninstallerViewController::loadRecord() {
  window_->setDeleteButton(DeleteButton::hidden);
  window_->setDeleteDetailedInfo(kLoadingRecordStatus);
  window_->setFileSelectedInfo(std::nullopt);
  window_->setSpinner(std::nullopt);
  showRows();
  const auto& items = uninstalledApp->appRelatedData;
  const bool anyLeft = std::any_of(items.begin(), items.end(),
                                   [](const AppRelatedData& item) { return itemExists(item.filePath); });
  window_->setDeleteDetailedInfo(anyLeft ? kFilesLeftStatus : kNoFilesLeftStatus);
  window_->showWindow();
  openWindow_ = services_.openWindows.open();
  services_.runLoop.async([weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->warnAboutTooManyFiles();
  });
}

void TWUninstallerViewController::startScan(ScanRequest request) {
  window_->setDeleteButton(DeleteButton::disabled);
  window_->setDeleteDetailedInfo(kFreshStatus);
  window_->setFileSelectedInfo(kNoFilesSelected);
  window_->setSpinner(kSpinnerMessage);
  window_->showWindow();
  openWindow_ = services_.openWindows.open();
  scan_ = std::make_unique<RelatedFileScan>(
      services_.runLoop, services_.text, std::move(request),
      [this](std::vector<ScannedItem> items) { append(std::move(items)); }, [this] { scanFinished(); });
}

void TWUninstallerViewController::append(std::vector<ScannedItem> items) {
  std::vector<ReviewRow> rows;
  for (ScannedItem& item : items) {
    std::optional<std::string> protection;
    if (item.owner) {
      protection = "This belongs to " + described(*item.owner) + " and goes when that is removed.";
      tellOwner(remarks_.size(), *item.owner);
    }
    uninstalledApp->appRelatedData.push_back(std::move(item.data));
    remarks_.push_back({std::move(item.caution), std::move(protection)});
    rows.push_back(rowOf(remarks_.size() - 1));
  }
  window_->appendRows(std::move(rows));
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

bool TWUninstallerViewController::hasItem(std::size_t row) const {
  return row < uninstalledApp->appRelatedData.size() && row < remarks_.size();
}

void TWUninstallerViewController::selectionChanged(std::size_t row, bool isSelected) {
  if (!hasItem(row)) return;
  if (isSelected && remarks_[row].protection) {
    showRows();
    return;
  }
  uninstalledApp->appRelatedData[row].isSelected = isSelected;
  if (!isHistory) window_->setFileSelectedInfo(selectionSummary(uninstalledApp->appRelatedData));
}

// Asked again at the last moment: what a package owns is the package's, whoever selected it.
bool TWUninstallerViewController::mayBeTrashed(const AppRelatedData& item) const {
  return item.isSelected && item.filePath && !services_.packages.ownerOf(item.filePath->path);
}

void TWUninstallerViewController::trashSelectedItems() {
  for (const AppRelatedData& item : uninstalledApp->appRelatedData) {
    if (mayBeTrashed(item)) services_.fileManager.trashItem(*item.filePath);
  }
}

void TWUninstallerViewController::deleteButtonClicked() {
  const auto self = shared_from_this();
  // Once before anything moves: should the program end in between, the record of what was to go is not lost.
  services_.uninstaller.saveUninstalledApp(*uninstalledApp);
  trashSelectedItems();
  services_.uninstaller.saveUninstalledApp(*uninstalledApp);
  window_->setDeleteButton(DeleteButton::disabled);

  bool anyDeleted = false;
  bool anyFailed = false;
  for (const AppRelatedData& item : uninstalledApp->appRelatedData) {
    if (!item.isSelected || !item.filePath) continue;
    if (itemExists(item.filePath)) {
      anyFailed = true;
    } else {
      anyDeleted = true;
      services_.applications.remove(item.filePath->path);
    }
  }
  const Outcome& outcome = !anyDeleted ? kUnsuccessful : anyFailed ? kPartly : kSuccessful;
  services_.dialog.show("", "OK", outcome.title, outcome.text, "");
  window_->setDeleteDetailedInfo(outcome.status);
  window_->setFileSelectedInfo(kNoFilesSelected);
  isAlreadyUninstalled = true;
  showRows();
}

ReviewRow TWUninstallerViewController::rowOf(std::size_t index) const {
  const AppRelatedData& item = uninstalledApp->appRelatedData[index];
  return {item.filePath,           item.fileSize,
          item.isSelected,         !isAlreadyUninstalled || itemExists(item.filePath),
          remarks_[index].caution, remarks_[index].protection};
}

void TWUninstallerViewController::showRows() {
  std::vector<ReviewRow> rows;
  rows.reserve(remarks_.size());
  for (std::size_t i = 0; i < remarks_.size(); ++i)
    rows.push_back(rowOf(i));
  window_->setRows(std::move(rows));
}

}  // namespace harbor
