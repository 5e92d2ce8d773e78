// The "Uninstall Applications" section of the status menu and what its rows do. Owns the open review windows.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/ApplicationBundles.h"
#include "platform/MenuSection.h"
#include "uninstaller/TWUninstallerViewController.h"

namespace harbor {

class UninstallerController {
 public:
  struct Options {
    const std::vector<std::string>& systemApps;  // paths that are never offered
    std::string ownName;                         // an application of this display name is never offered
    std::function<std::string()> homeFolder;
    std::string root;  // see RelatedFileSearch
    // Obtains access to the folders that a review works in; false when the user refuses.
    std::function<bool()> obtainAccess;
    // What an application says about itself.
    std::function<BundleInformation(const std::string& path)> bundleInformation;
    // Opens the access that was granted before, without asking.
    std::function<void()> openGrantedAccess = [] {};
  };

  UninstallerController(const TWUninstallerViewController::Services& services,
                        const ApplicationBundles& bundles, Options options);

  void appendSection(Menu& menu, MenuBuild build);

  // The menu's actions. The application's path is the sender's.
  void reloadApps(const MenuItem& sender);
  void openApp(const MenuItem& sender);
  void uninstallApp(const MenuItem& sender);
  void showUninstalledApp(const MenuItem& sender);

 private:
  using Windows = std::vector<std::shared_ptr<TWUninstallerViewController>>;

  Menu historyRows();
  bool isOffered(const FileUrl& url, const std::string& displayName) const;
  // Whether the application is still there; otherwise offers to reload the inventory.
  bool findApplication(const std::string& path);
  ScanRequest scanRequest(const std::string& path) const;
  // Brings the window of that application to the front, if it is open.
  static bool orderFront(const Windows& windows, const std::string& path);
  static std::function<void()> remover(Windows& windows, const std::string& path);

  TWUninstallerViewController::Services services_;
  const ApplicationBundles& bundles_;
  Options options_;
  Windows reviewWindows_;
  Windows historyWindows_;
};

}  // namespace harbor
