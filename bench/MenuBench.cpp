// What a click on the icon costs before anything is drawn: 500 installed applications and a full history of
// entries of one mebibyte each, on the platform in memory, with real folders on disk.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "app/AppDelegate.h"
#include "platform/PropertyListCoding.h"
#include "platform/memory/MemoryPlatform.h"
#include "settings/SettingsKeys.h"
#include "support/TemporaryFolder.h"

namespace harbor {
namespace {

constexpr int kApplications = 500;
constexpr int kEntries = 20;
constexpr std::size_t kEntrySize = 1 << 20;

std::string entryOf(const std::string& part, int number) {
  std::string entry = std::to_string(number) + ' ';
  while (entry.size() + part.size() <= kEntrySize)
    entry += part;
  return entry;
}

// The program as a user has it who filled the history with texts made of the part.
struct FullMenu {
  explicit FullMenu(const std::string& part) {
    platform.settings.setBool(settings_keys::startMessageAlertSuppression, true);
    platform.settings.setBool(settings_keys::clipboardEnabled, true);
    for (int i = 0; i < kApplications; ++i)
      folder.makeFolder("Application " + std::to_string(i) + ".app");
    platform.fileManager.localApplications = {{folder.path(), true}};
    platform.fileManager.systemApplications = {{folder.path(), true}};
    std::vector<std::string> history;
    for (int i = 0; i < kEntries; ++i)
      history.push_back(entryOf(part, i));
    platform.settings.setData(settings_keys::clipboardContent,
                              *encodeStrings(platform.propertyLists, history));
    app = std::make_unique<AppDelegate>(platform.asPlatform());
    app->applicationDidFinishLaunching();
    platform.pasteboard.copy(history.back());
  }

  TemporaryFolder folder;
  MemoryPlatform platform;
  std::unique_ptr<AppDelegate> app;
};

void click(benchmark::State& state, const std::string& part) {
  FullMenu menu(part);
  for (auto _ : state) {
    menu.platform.statusItem.click();
    benchmark::DoNotOptimize(menu.platform.statusItem.menu.data());
  }
}

BENCHMARK_CAPTURE(click, plainEntries, "A line of text that somebody copied.\n")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(click, accentedEntries, "e\u0301\u4e2d\u6587 \U0001F468\u200D\U0001F469\u200D\U0001F467\n")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(click, blankEntries, " \n\t")->Unit(benchmark::kMillisecond);

void recordCopy(benchmark::State& state) {
  FullMenu menu("A line of text that somebody copied.\n");
  int number = kEntries;
  for (auto _ : state) {
    menu.platform.pasteboard.copy(entryOf("x", number++));
    menu.platform.runLoop.advance(std::chrono::seconds(1));
  }
}
BENCHMARK(recordCopy)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace harbor

BENCHMARK_MAIN();
