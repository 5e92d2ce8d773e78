#include "uninstaller/UninstallerController.h"

#include <algorithm>
#include <utility>

#include "platform/ApplicationListing.h"

namespace harbor {

UninstallerController::UninstallerController(const TWUninstallerViewController::Services& services,
                                             const ApplicationBundles& bundles, Options options)
    : services_(services), bundles_(bundles), options_(std::move(options)) {}

void UninstallerController::appendSection(Menu& menu, MenuBuild) {
  Menu submenu;
  submenu.push_back(menuSection("Uninstallation History", historyRows()));
  submenu.push_back(MenuItem::separator());
  submenu.push_back(menuItem("Reload Apps", [this](const MenuItem& sender) { reloadApps(sender); }));
  submenu.push_back(MenuItem::separator());
  const auto row = [](const char* title, const FileUrl& url, MenuItem::Action action) {
    MenuItem item = menuItem(title, std::move(action));
    item.path = url.path;
    item.toolTip = url.path;
    return item;
  };
  for (const FileUrl& url : services_.applications.applicationsSorted) {
    const std::string displayName = bundles_.displayName(url.path);
    if (!isOffered(url, displayName)) continue;
    submenu.push_back(menuSection(
        displayName, {row("Open", url, [this](const MenuItem& sender) { openApp(sender); }),
                      row("Uninstall", url, [this](const MenuItem& sender) { uninstallApp(sender); })}));
  }
  menu.push_back(menuSection("Uninstall Applications", std::move(submenu)));
}

Menu UninstallerController::historyRows() {
  services_.uninstaller.loadUninstalledApps();
  Menu rows;
  for (const auto& app : services_.uninstaller.uninstalledApps) {
    if (!app->appName) continue;
    MenuItem item = menuItem(bundles_.displayName(app->appName->path),
                             [this](const MenuItem& sender) { showUninstalledApp(sender); });
    item.path = app->appName->path;
    item.toolTip = app->appName->path;
    rows.push_back(std::move(item));
  }
  return rows;
}

bool UninstallerController::isOffered(const FileUrl& url, const std::string& displayName) const {
  const auto& systemApps = options_.systemApps;
  return displayName != options_.ownName &&
         std::find(systemApps.begin(), systemApps.end(), url.path) == systemApps.end();
}

void UninstallerController::reloadApps(const MenuItem&) {
  services_.applications.reload();
}

bool UninstallerController::findApplication(const std::string& path) {
  if (existingFile(path)) return true;
  if (services_.dialog.confirm("Cancel", "Reload Apps", "App Missing",
                               "Please refresh by clicking Reload Apps")) {
    services_.applications.reload();
  }
  return false;
}

void UninstallerController::openApp(const MenuItem& sender) {
  if (findApplication(sender.path)) services_.workspace.openFile(FileUrl::fromPath(sender.path));
}

void UninstallerController::uninstallApp(const MenuItem& sender) {
  const std::string path = sender.path;
  if (!findApplication(path) || orderFront(reviewWindows_, path) || !options_.obtainAccess()) return;
  if (auto window = TWUninstallerViewController::forScan(
          services_, scanRequest(path), bundles_.displayName(path), remover(reviewWindows_, path))) {
    reviewWindows_.push_back(std::move(window));
  }
}

void UninstallerController::showUninstalledApp(const MenuItem& sender) {
  const std::string path = sender.path;
  if (orderFront(historyWindows_, path)) return;
  options_.openGrantedAccess();
  for (const auto& app : services_.uninstaller.uninstalledApps) {
    if (!app->appName || app->appName->path != path) continue;
    if (auto window = TWUninstallerViewController::forHistory(services_, *app, bundles_.displayName(path),
                                                              remover(historyWindows_, path))) {
      historyWindows_.push_back(std::move(window));
    }
    return;
  }
}

ScanRequest UninstallerController::scanRequest(const std::string& path) const {
  ScanRequest request{path, options_.bundleInformation(path),        options_.homeFolder(), options_.root,
                      {},   services_.fileManager.documentFolders(), &services_.packages};
  request.bundle.relatedPlaces = bundles_.relatedPlaces(path);
  for (const FileUrl& other : services_.applications.applicationsSorted) {
    if (other.path == path) continue;
    BundleInformation information = options_.bundleInformation(other.path);
    if (!information.identifier) continue;
    request.otherApplications.push_back({bundles_.displayName(other.path), *std::move(information.identifier),
                                         std::move(information.wholeNames), other.path,
                                         std::move(information.executable)});
  }
  return request;
}

bool UninstallerController::orderFront(const Windows& windows, const std::string& path) {
  const auto open = std::find_if(windows.begin(), windows.end(),
                                 [&path](const auto& window) { return window->appPath == path; });
  if (open == windows.end()) return false;
  (*open)->orderFront();
  return true;
}

std::function<void()> UninstallerController::remover(Windows& windows, const std::string& path) {
  return [&windows, path] {
    std::erase_if(windows, [&path](const auto& window) { return window->appPath == path; });
  };
}

}  // namespace harbor
