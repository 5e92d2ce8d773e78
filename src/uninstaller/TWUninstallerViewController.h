// One review window: the related files of one application, which of them are to go, and what became of them.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "alerts/TWDialog.h"
#include "platform/FileManager.h"
#include "platform/OpenWindows.h"
#include "platform/PreviewPanel.h"
#include "platform/ReviewWindow.h"
#include "platform/RunLoop.h"
#include "platform/SoftwarePackages.h"
#include "platform/Workspace.h"
#include "uninstaller/RelatedFileScan.h"
#include "uninstaller/ReviewSelection.h"
#include "uninstaller/TWApplications.h"
#include "uninstaller/TWUninstaller.h"

namespace harbor {

class TWUninstallerViewController : public std::enable_shared_from_this<TWUninstallerViewController> {
 public:
  // What a review works with; each outlives the window.
  struct Services {
    RunLoop& runLoop;
    const Text& text;
    TWDialog& dialog;
    Workspace& workspace;
    FileManager& fileManager;
    ReviewWindows& reviewWindows;
    PreviewPanel& previewPanel;
    OpenWindows& openWindows;
    TWApplications& applications;
    TWUninstaller& uninstaller;
    SoftwarePackages& packages;
  };

  // A fresh review of the application, or one of a stored record, which the window goes on showing as it is
  // now. `disappeared` is called once the user has closed the window; the controller may be dropped from
  // within.
  static std::shared_ptr<TWUninstallerViewController> forScan(const Services& services, ScanRequest request,
                                                              const std::string& displayName,
                                                              std::function<void()> disappeared);
  static std::shared_ptr<TWUninstallerViewController> forHistory(const Services& services,
                                                                 const UninstalledApp& record,
                                                                 const std::string& displayName,
                                                                 std::function<void()> disappeared);

  // Brings the open window to the front. After a deletion, and for a record, it shows again which files are
  // left.
  void orderFront();

  const std::string appPath;
  const std::shared_ptr<UninstalledApp> uninstalledApp;
  std::optional<FileUrl> previewItem;
  bool isAlreadyUninstalled = false;  // a deletion run has happened, or the record comes from the history
  const bool isHistory;
  static constexpr std::size_t relatedFilesUpperLimit = 20;

 private:
  enum class Origin { scan, history };
  TWUninstallerViewController(const Services& services, UninstalledApp record, std::string path,
                              std::string displayName, Origin origin);

  bool makeWindow(const std::string& title, std::function<void()> disappeared);
  void loadRecord();
  void startScan(ScanRequest request);
  void scanFinished();
  void warnAboutTooManyFiles();
  void append(std::vector<ScannedItem> items);
  // Says in the window which package the application, or the program that it starts, came with.
  void tellOwner(std::size_t row, const PackageOwner& owner);
  void selectionChanged(const ReviewSelection::Rows& rows, bool isSelected);
  void deleteButtonClicked();
  bool mayBeTrashed(std::size_t row) const;
  void trashSelectedItems();
  bool itemExists(std::size_t row) const;
  // Finds out which items are left; no row shows it yet.
  void lookForItems();
  void showWhatIsLeft();
  std::optional<std::string> protectionOf(std::size_t row) const;
  std::optional<std::string> companionOf(std::size_t row) const;
  ReviewRow rowOf(std::size_t row) const;
  void showSummary();
  void showRows(const ReviewSelection::Rows& rows);
  void showAllRows();

  // What a row says beside its item.
  struct Remarks {
    std::optional<std::string> caution;
    std::optional<std::string> owner;  // the package that the item came with, as in a sentence
    bool isGone = false;               // shown disabled
  };

  Services services_;
  std::string displayName_;
  ReviewSelection selection_;
  std::vector<Remarks> remarks_;  // one for each item
  bool isOwnerTold_ = false;
  std::unique_ptr<ReviewWindow> window_;
  Subscription openWindow_;
  std::unique_ptr<RelatedFileScan> scan_;
};

}  // namespace harbor
