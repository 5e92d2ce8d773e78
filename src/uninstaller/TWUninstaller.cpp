#include "uninstaller/TWUninstaller.h"

#include <algorithm>
#include <utility>

#include "settings/SettingsKeys.h"

namespace harbor {

TWUninstaller::TWUninstaller(SettingsStore& settings, const PropertyListCoder& coder)
    : settings_(settings), coder_(coder) {
  loadUninstalledApps();
}

void TWUninstaller::loadUninstalledApps() {
  const auto data = settings_.dataForKey(settings_keys::uninstalledApplications);
  if (!data) return;
  if (auto apps = decodeUninstalledApps(coder_, *data)) uninstalledApps = std::move(*apps);
}

bool TWUninstaller::saveUninstalledApp(const UninstalledApp& app) {
  const auto existing = std::find_if(
      uninstalledApps.begin(), uninstalledApps.end(),
      [&app](const std::shared_ptr<UninstalledApp>& other) { return other->appName == app.appName; });
  if (existing == uninstalledApps.end()) {
    uninstalledApps.push_back(std::make_shared<UninstalledApp>(app));
  } else if (existing->get() != &app) {
    (*existing)->appRelatedData = app.appRelatedData;
  }
  const auto data = encodeUninstalledApps(coder_, uninstalledApps);
  return data && settings_.setData(settings_keys::uninstalledApplications, *data);
}

}  // namespace harbor
