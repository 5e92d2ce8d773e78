#include "uninstaller/UninstallerAccess.h"

#include "base/FileUrl.h"

namespace harbor {
namespace {

TWDiskAccess::Texts textsFor(const std::string& folder) {
  return {"Select Folder",
          "Click Open to select the " + folder +
              ".\n(The Open button will be enabled when you have selected the correct folder.)",
          "Uninstall failed", "Please grant access for the uninstaller to work", "OK"};
}

}  // namespace

bool obtainUninstallerAccess(TWDiskAccess& access, const std::string& homeFolder) {
  access.loadBookmarks();
  return access.promptForHomeFolder(textsFor("home folder: \"" + lastPathComponent(homeFolder) + "\"")) &&
         access.promptForApplicationsFolder(textsFor("applications folder: \"Applications\"")) &&
         access.promptForPrivateVarFolder(textsFor("systems folder: \"/private/var\""));
}

}  // namespace harbor
