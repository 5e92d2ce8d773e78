#include <filesystem>
#include <fstream>
#include <iterator>

#include "Fuzzer.h"
#include "platform/linux/LinuxSettingsStore.h"
#include "platform/plist/LibplistCoder.h"
#include "support/TemporaryFolder.h"

namespace {

constexpr const char* kName = "settings.plist";

std::string contentsOf(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace

// Whatever is in the file, the store opens and writes, and what it could not use is still there.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  using namespace harbor;
  static const TemporaryFolder folder;
  const LibplistCoder coder;
  const std::string input(reinterpret_cast<const char*>(bytes), size);
  const std::string path = folder.makeFile(kName, input);
  const std::string aside = path + ".broken-1";
  const auto before = coder.decode(Data(input.begin(), input.end()));
  const bool isUsable = before && before->as<PropertyList::Dictionary>();
  {
    LinuxSettingsStore store(path, coder);
    require(std::filesystem::exists(aside) != isUsable, "what cannot be used is set aside, and nothing else");
    require(isUsable || contentsOf(aside) == input, "what is set aside stays as it is");
    require(store.setBool("FocusModeEnabled", true), "the store can be written to");
  }
  const std::string after = contentsOf(path);
  auto expected = isUsable ? *before : PropertyList();
  expected.as<PropertyList::Dictionary>()->insert_or_assign("FocusModeEnabled", true);
  const auto written = coder.decode(Data(after.begin(), after.end()));
  require(written && coder.encode(*written) == coder.encode(expected), "other keys stay as they are");
  std::filesystem::remove(aside);
  return 0;
}
