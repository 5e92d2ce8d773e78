#include "app/CleanupTools.h"

namespace harbor {

CleanupTools::CleanupTools(const Platform& platform, TWDialog& dialog)
    : removal(platform.homeFolder, status,
              [&places = platform.cleanupPlaces] { return places.sandboxFolders(); }),
      diskUtility(removal, platform.text, platform.workspace, platform.application,
                  platform.applicationBundles, platform.propertyLists),
      shell(platform.commandsFolder),
      placeCleanup(diskUtility, removal, shell),
      access{platform.settings, platform.propertyLists, platform.folderBookmarks, platform.openPanel, dialog,
             platform.runLoop,  platform.fileManager,   platform.homeFolder,      externalVolumes},
      protectPrivacyRoutines(diskUtility, placeCleanup, platform.cleanupPlaces, shell, platform.homeFolder,
                             status),
      freeDiskSpaceRoutines(placeCleanup, platform.cleanupPlaces, platform.homeFolder, externalVolumes,
                            status),
      protectPrivacy(protectPrivacyRoutines, access,
                     {dialog, platform.workspace, platform.fileManager, platform.applicationBundles,
                      platform.cleanupProgress, status, platform.homeFolder, platform.cleanupPlaces}),
      freeDiskSpace(freeDiskSpaceRoutines, access,
                    {dialog, platform.settings, shell, platform.cleanupProgress, status, platform.homeFolder,
                     externalVolumes}) {}

}  // namespace harbor
