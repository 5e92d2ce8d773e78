// What the uninstaller costs with 1,000 applications installed: the inventory in a program that has just
// started, its part of the menu, and the file search's second opinion on 10,000 items.
#include <benchmark/benchmark.h>

#include <string>

#include "platform/icu/IcuText.h"
#include "platform/linux/LinuxApplicationBundles.h"
#include "platform/memory/MemoryFileManager.h"
#include "support/TemporaryFolder.h"
#include "uninstaller/RelatedFileCautions.h"
#include "uninstaller/TWApplications.h"

namespace harbor {
namespace {

constexpr int kApplications = 1000;

struct Installed {
  Installed() {
    for (int i = 0; i < kApplications; ++i) {
      const std::string number = std::to_string(i);
      folder.makeFile("applications/org.example.App" + number + ".desktop",
                      "[Desktop Entry]\nType=Application\nName=Application " + number +
                          "\nName[de]=Anwendung " + number +
                          "\nComment=Does what applications do\nTryExec=sh\nExec=sh -c app" + number +
                          " %U\nIcon=app\nCategories=Utility;\n");
    }
    environment.dataHome = folder.path();
    environment.searchPath = {"/usr/local/bin", "/usr/bin", "/bin"};
    environment.locale = "de_DE.UTF-8";
    fileManager.localApplications = {{folder.path("applications"), true}};
  }

  TemporaryFolder folder;
  XdgEnvironment environment;
  MemoryFileManager fileManager;
  IcuText text;
};

void coldInventory(benchmark::State& state) {
  const Installed installed;
  for (auto _ : state) {
    const DesktopEntries entries(installed.environment);
    const LinuxApplicationBundles bundles(entries, installed.text);
    TWApplications applications(installed.fileManager, bundles);
    applications.reload();
    if (applications.applicationsSorted.size() != kApplications) state.SkipWithError("not all were found");
  }
}
BENCHMARK(coldInventory)->Unit(benchmark::kMillisecond);

// At every click on the icon, a second or more after the last one.
void namesForTheMenu(benchmark::State& state) {
  const Installed installed;
  const DesktopEntries entries(installed.environment, std::chrono::milliseconds(0));
  const LinuxApplicationBundles bundles(entries, installed.text);
  TWApplications applications(installed.fileManager, bundles);
  applications.reload();
  for (auto _ : state) {
    applications.prune();
    for (const FileUrl& url : applications.applicationsSorted)
      benchmark::DoNotOptimize(bundles.displayName(url.path));
  }
}
BENCHMARK(namesForTheMenu)->Unit(benchmark::kMillisecond);

void cautionsFor10000Items(benchmark::State& state) {
  const IcuText text;
  std::vector<InstalledApplication> others;
  for (int i = 0; i < kApplications; ++i) {
    const std::string number = std::to_string(i);
    others.push_back({"Application " + number, "org.example.App" + number});
  }
  BundleInformation bundle;
  bundle.name = "Sketchbook";
  bundle.identifier = "org.example.Sketchbook";
  for (auto _ : state) {
    const RelatedFileCautions cautions(applicationIdentity(bundle, text), text, others, {});
    for (int i = 0; i < 10'000; ++i) {
      benchmark::DoNotOptimize(cautions.cautionFor(
          {"/home/ann/Library/Preferences/org.example.Sketchbook." + std::to_string(i), false}));
    }
  }
}
BENCHMARK(cautionsFor10000Items)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace harbor

BENCHMARK_MAIN();
