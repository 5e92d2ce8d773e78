// The uninstallation history: a record for every application whose files the user has reviewed and deleted,
// oldest first. It only grows; a further review of the same application replaces its record's items in place.
#pragma once

#include <memory>

#include "platform/SettingsStore.h"
#include "uninstaller/UninstalledApp.h"

namespace harbor {

class TWUninstaller {
 public:
  // Loads the history at once.
  TWUninstaller(SettingsStore& settings, const PropertyListCoder& coder);

  // Reads the stored history. Where nothing is stored, or what is stored cannot be decoded, the list stays as
  // it is and the stored value is left alone.
  void loadUninstalledApps();

  // Merges the record into the history and stores the whole. The record with the same application path keeps
  // its place and takes over the items; two records without a URL are the same. When the list cannot be
  // encoded nothing is stored. False when the history was not made durable.
  bool saveUninstalledApp(const UninstalledApp& app);

  UninstalledApps uninstalledApps;

 private:
  SettingsStore& settings_;
  const PropertyListCoder& coder_;
};

}  // namespace harbor
