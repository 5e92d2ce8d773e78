// The stored uninstallation history.
#include "Fuzzer.h"
#include "platform/plist/LibplistCoder.h"
#include "uninstaller/UninstalledApp.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  using namespace harbor;
  const LibplistCoder coder;
  const auto apps = decodeUninstalledApps(coder, Data(bytes, bytes + size));
  if (!apps) return 0;
  // What has been read can be written and read again.
  const auto written = encodeUninstalledApps(coder, *apps);
  require(written.has_value(), "what was read can be written");
  const auto again = decodeUninstalledApps(coder, *written);
  require(again && again->size() == apps->size(), "no record is lost");
  for (std::size_t index = 0; index < apps->size(); ++index) {
    require((*again)[index]->appName == (*apps)[index]->appName, "the application is the same");
    require((*again)[index]->appRelatedData == (*apps)[index]->appRelatedData, "the items are the same");
  }
  return 0;
}
