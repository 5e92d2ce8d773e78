// Processes that are killed without warning while they write settings.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <random>
#include <string>

#include "platform/linux/LinuxSettingsStore.h"
#include "platform/plist/LibplistCoder.h"
#include "support/TemporaryFolder.h"

namespace harbor {
namespace {

constexpr int kKills = 200;
constexpr const char* kKey = "ClipboardContent";

// The data of the given write, of a size and contents of its own.
Data dataOfWrite(std::uint32_t number) {
  std::minstd_rand random(number + 1);
  Data data(random() % 200'000 + 4);
  for (std::uint8_t& byte : data)
    byte = static_cast<std::uint8_t>(random());
  for (int i = 0; i < 4; ++i)
    data[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(number >> (8 * i));
  return data;
}

std::uint32_t numberIn(const Data& data) {
  std::uint32_t number = 0;
  for (int i = 3; i >= 0; --i)
    number = number << 8 | data.at(static_cast<std::size_t>(i));
  return number;
}

// Writes one value after the other and says so after each, until it is killed.
[[noreturn]] void writeForever(const std::string& path, std::uint32_t number, int acknowledgements) {
  const LibplistCoder coder;
  LinuxSettingsStore store(path, coder);
  for (;; ++number) {
    if (!store.setData(kKey, dataOfWrite(number))) ::_exit(1);
    if (::write(acknowledgements, &number, sizeof number) != sizeof number) ::_exit(1);
  }
}

TEST(KilledSettingsWriter, LeavesAWholeFileThatIsNoOlderThanTheLastAcknowledgedWrite) {
  const TemporaryFolder folder;
  const LibplistCoder coder;
  const std::string path = folder.makeFolder("config") + "/settings.plist";
  {
    LinuxSettingsStore store(path, coder);
    ASSERT_TRUE(store.setString("SelectedOpacity", "80% Opacity"));
    ASSERT_TRUE(store.setData(kKey, dataOfWrite(0)));
  }
  std::minstd_rand random(20'240'229);
  std::uint32_t acknowledged = 0;
  int killsDuringAWrite = 0;
  for (int kill = 0; kill < kKills; ++kill) {
    int pipe[2];
    ASSERT_EQ(::pipe(pipe), 0);
    const pid_t writer = ::fork();
    ASSERT_GE(writer, 0);
    if (writer == 0) {
      ::close(pipe[0]);
      writeForever(path, acknowledged + 1, pipe[1]);
    }
    ::close(pipe[1]);
    ::usleep(static_cast<useconds_t>(random() % 50'000));
    ::kill(writer, SIGKILL);
    int status = 0;
    ::waitpid(writer, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status)) << "the writer gave up by itself";
    for (std::uint32_t number = 0; ::read(pipe[0], &number, sizeof number) == sizeof number;)
      acknowledged = number;
    ::close(pipe[0]);

    const auto leftover = folder.path("config/.settings.plist." + std::to_string(writer) + ".tmp");
    if (std::filesystem::exists(leftover)) ++killsDuringAWrite;
    const LinuxSettingsStore store(path, coder);
    EXPECT_FALSE(std::filesystem::exists(path + ".broken-1"));
    EXPECT_FALSE(std::filesystem::exists(leftover));
    EXPECT_EQ(store.stringForKey("SelectedOpacity"), "80% Opacity");
    const auto data = store.dataForKey(kKey);
    ASSERT_TRUE(data);
    const std::uint32_t number = numberIn(*data);
    EXPECT_TRUE(number == acknowledged || number == acknowledged + 1) << number << " of " << acknowledged;
    EXPECT_EQ(*data, dataOfWrite(number));
    acknowledged = number;
  }
  std::printf("%d kills, %d of them with a half-written file, %u writes\n", kKills, killsDuringAWrite,
              acknowledged);
  EXPECT_GT(killsDuringAWrite, 0) << "no kill came during a write, so nothing was shown";
}

}  // namespace
}  // namespace harbor
