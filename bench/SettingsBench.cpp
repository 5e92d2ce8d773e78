// What storing a setting costs, beside the least that replacing a file durably can cost: writing the same
// bytes to a new file, fsync, rename. Run on the file system of the temporary folder (TMPDIR).
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <plist/plist.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "platform/PropertyListCoding.h"
#include "platform/linux/LinuxSettingsStore.h"
#include "platform/plist/LibplistCoder.h"
#include "settings/SettingsKeys.h"
#include "support/TemporaryFolder.h"

namespace harbor {
namespace {

constexpr int kHistoryEntries = 20;

// The settings of a user with a full history of entries of that many bytes each.
PropertyList settingsWith(const LibplistCoder& coder, std::size_t entrySize) {
  std::vector<std::string> history;
  for (int i = 0; i < kHistoryEntries; ++i)
    history.emplace_back(entrySize, static_cast<char>('a' + i));
  return PropertyList::Dictionary{
      {settings_keys::focusModeEnabled, true},
      {settings_keys::selectedDimColor, "Black Color"},
      {settings_keys::selectedOpacity, "80% Opacity"},
      {settings_keys::selectedCustomDimColor, *coder.archiveColour({0.1, 0.2, 0.3, 1.0})},
      {settings_keys::tintScreenEnabled, false},
      {settings_keys::clipboardEnabled, true},
      {settings_keys::clipboardContent, *encodeStrings(coder, history)},
      {settings_keys::reviewPromptNextDate, Date(std::chrono::seconds(1'700'000'000))},
  };
}

struct SettingsOnDisk {
  explicit SettingsOnDisk(std::size_t entrySize)
      : value(settingsWith(coder, entrySize)), bytes(*coder.encode(value)) {
    folder.makeFile("settings.plist", std::string(bytes.begin(), bytes.end()));
  }

  TemporaryFolder folder;
  LibplistCoder coder;
  PropertyList value;
  Data bytes;
  std::string path = folder.path("settings.plist");
};

void settingsWrite(benchmark::State& state) {
  const SettingsOnDisk disk(static_cast<std::size_t>(state.range(0)));
  LinuxSettingsStore store(disk.path, disk.coder);
  bool value = false;
  for (auto _ : state) {
    value = !value;
    if (!store.setBool(settings_keys::tintScreenEnabled, value)) state.SkipWithError("the write failed");
  }
  state.counters["bytes"] = static_cast<double>(disk.bytes.size());
}

void plainReplacement(benchmark::State& state) {
  const SettingsOnDisk disk(static_cast<std::size_t>(state.range(0)));
  const std::string temporary = disk.path + ".new";
  for (auto _ : state) {
    const int file = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    const bool isWritten =
        ::write(file, disk.bytes.data(), disk.bytes.size()) == static_cast<ssize_t>(disk.bytes.size());
    const bool isReplaced = isWritten && ::fsync(file) == 0 && ::close(file) == 0 &&
                            ::rename(temporary.c_str(), disk.path.c_str()) == 0;
    if (!isReplaced) state.SkipWithError("the write failed");
  }
  state.counters["bytes"] = static_cast<double>(disk.bytes.size());
}

void settingsUnchanged(benchmark::State& state) {
  const SettingsOnDisk disk(static_cast<std::size_t>(state.range(0)));
  LinuxSettingsStore store(disk.path, disk.coder);
  for (auto _ : state)
    benchmark::DoNotOptimize(store.setBool(settings_keys::focusModeEnabled, true));
}

void settingsOpen(benchmark::State& state) {
  const SettingsOnDisk disk(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    const LinuxSettingsStore store(disk.path, disk.coder);
    benchmark::DoNotOptimize(store.boolForKey(settings_keys::focusModeEnabled));
  }
}

PropertyList records() {
  PropertyList::Array array;
  for (int i = 0; i < 10'000; ++i)
    array.push_back(PropertyList::Dictionary{
        {"relative", "file:///Applications/Application%20" + std::to_string(i)}, {"size", i}});
  return array;
}

void decodeRecords(benchmark::State& state) {
  const LibplistCoder coder;
  const Data bytes = *coder.encode(records());
  for (auto _ : state)
    benchmark::DoNotOptimize(coder.decode(bytes));
}

void decodeRecordsByLibplist(benchmark::State& state) {
  const Data bytes = *LibplistCoder().encode(records());
  for (auto _ : state) {
    plist_t node = nullptr;
    plist_from_bin(reinterpret_cast<const char*>(bytes.data()), static_cast<std::uint32_t>(bytes.size()),
                   &node);
    plist_free(node);
  }
}

void encodeRecords(benchmark::State& state) {
  const LibplistCoder coder;
  const PropertyList value = records();
  for (auto _ : state)
    benchmark::DoNotOptimize(coder.encode(value));
}

void encodeRecordsByLibplist(benchmark::State& state) {
  const Data bytes = *LibplistCoder().encode(records());
  plist_t node = nullptr;
  plist_from_bin(reinterpret_cast<const char*>(bytes.data()), static_cast<std::uint32_t>(bytes.size()),
                 &node);
  for (auto _ : state) {
    char* encoded = nullptr;
    std::uint32_t length = 0;
    plist_to_bin(node, &encoded, &length);
    plist_to_bin_free(encoded);
  }
  plist_free(node);
}

// A history of short texts, and the fullest one there can be.
constexpr std::int64_t kShort = 100;
constexpr std::int64_t kFullest = 1 << 20;

BENCHMARK(settingsWrite)->Arg(kShort)->Arg(kFullest)->Unit(benchmark::kMicrosecond);
BENCHMARK(plainReplacement)->Arg(kShort)->Arg(kFullest)->Unit(benchmark::kMicrosecond);
BENCHMARK(settingsUnchanged)->Arg(kShort)->Arg(kFullest)->Unit(benchmark::kMicrosecond);
BENCHMARK(settingsOpen)->Arg(kShort)->Arg(kFullest)->Unit(benchmark::kMicrosecond);
BENCHMARK(decodeRecords)->Unit(benchmark::kMicrosecond);
BENCHMARK(decodeRecordsByLibplist)->Unit(benchmark::kMicrosecond);
BENCHMARK(encodeRecords)->Unit(benchmark::kMicrosecond);
BENCHMARK(encodeRecordsByLibplist)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace harbor

BENCHMARK_MAIN();
