// What an application's Info.plist says, as the disk utility reads it from a file.
#include "Fuzzer.h"
#include "disk/TWDiskUtility.h"
#include "platform/memory/MemoryPlatform.h"
#include "support/TemporaryFolder.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  using namespace harbor;
  static const TemporaryFolder folder;
  static MemoryPlatform platform;
  static CleanupStatus status;
  static FileRemoval removal([] { return std::string(); }, status);
  static const TWDiskUtility utility(removal, platform.text, platform.workspace, platform.application,
                                     platform.applicationBundles, platform.propertyLists);
  folder.makeFile("Editor.app/Contents/Info.plist", std::string(bytes, bytes + size));
  const std::string bundle = folder.path("Editor.app");
  utility.displayNameOfBundle(bundle);
  utility.nameOfBundle(bundle);
  utility.executableOfBundle(bundle);
  return 0;
}
