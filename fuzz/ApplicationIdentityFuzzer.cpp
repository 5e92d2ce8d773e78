// The way from an application's own files to the rule that tells which files belong to it: the bytes once as
// the Info.plist of a bundle and once as a desktop entry.
#include "Fuzzer.h"
#include "platform/icu/IcuText.h"
#include "platform/linux/LinuxApplicationBundles.h"
#include "platform/plist/LibplistCoder.h"
#include "support/TemporaryFolder.h"
#include "uninstaller/RelatedFileCautions.h"

namespace {

using namespace harbor;

const IcuText text;
const LibplistCoder propertyLists;

void checkApplication(const std::string& path, const ApplicationBundles& bundles,
                      const std::string& entryName) {
  const auto identity = applicationIdentity(bundleInformationOf(path, bundles, propertyLists), text);
  const ApplicationMatcher matcher(identity, text);
  for (const std::string& name : identity.names)
    require(matcher.matchesApplication(name), "a file of the application's name is its file");
  if (identity.bundleIdentifier) {
    require(matcher.matchesApplication(*identity.bundleIdentifier), "so is one of its identifier");
    require(matcher.containsBundleIdentifier("x" + *identity.bundleIdentifier + ".bom"),
            "a receipt is found");
  }
  if (identity.bundlePrefix) require(identity.bundleTail && !identity.bundleTail->empty(), "both or neither");
  matcher.matchesApplication(entryName);
  const RelatedFileCautions cautions(identity, text, {{"Other", "org.example.Other"}}, {});
  cautions.cautionFor({"/" + entryName, false});
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static const TemporaryFolder folder;
  static const XdgEnvironment environment = [] {
    XdgEnvironment made;
    made.dataHome = folder.path("share");
    made.locale = "de_DE.UTF-8";
    return made;
  }();
  const std::string contents(bytes, bytes + size);
  const std::string bundle = folder.path("Editor.app");
  folder.makeFile("Editor.app/Contents/Info.plist", contents);
  const std::string entry = folder.makeFile("share/applications/org.example.Editor.desktop", contents);
  const DesktopEntries entries(environment, std::chrono::milliseconds(0));
  const LinuxApplicationBundles bundles(entries, text);
  const std::string entryName = contents.substr(0, 80);
  checkApplication(bundle, bundles, entryName);
  checkApplication(entry, bundles, entryName);
  return 0;
}
