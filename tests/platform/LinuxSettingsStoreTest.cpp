#include "platform/linux/LinuxSettingsStore.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <set>
#include <string>

#include "platform/plist/LibplistCoder.h"
#include "support/TemporaryFolder.h"

namespace harbor {
namespace {

using namespace std::string_literals;
namespace fs = std::filesystem;

mode_t modeOf(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
}

std::string contentsOf(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

struct LinuxSettingsStoreTest : testing::Test {
  TemporaryFolder folder;
  LibplistCoder coder;
  std::string path = folder.makeFolder("config") + "/settings.plist";

  LinuxSettingsStore open() const { return LinuxSettingsStore(path, coder); }

  std::set<std::string> names() const {
    std::set<std::string> result;
    for (const auto& entry : fs::directory_iterator(folder.path("config")))
      result.insert(entry.path().filename());
    return result;
  }

  void write(const PropertyList& value) const {
    const Data bytes = *coder.encode(value);
    folder.makeFile("config/settings.plist", std::string(bytes.begin(), bytes.end()));
  }

  PropertyList stored() const {
    const std::string bytes = contentsOf(path);
    return coder.decode(Data(bytes.begin(), bytes.end()))
        .value_or(PropertyList("nothing that can be decoded"));
  }
};

TEST_F(LinuxSettingsStoreTest, LiesInTheConfigurationFolderOfTheEnvironmentOrOfTheHomeFolder) {
  const char* old = std::getenv("XDG_CONFIG_HOME");
  const std::string saved = old ? old : "";
  ::setenv("XDG_CONFIG_HOME", "/somewhere/config", 1);
  EXPECT_EQ(LinuxSettingsStore::defaultPath("/home/ann"), "/somewhere/config/com.tidewell.HarborTray.plist");
  for (const char* relative : {"", "relative/config", "./x"}) {
    ::setenv("XDG_CONFIG_HOME", relative, 1);
    EXPECT_EQ(LinuxSettingsStore::defaultPath("/home/ann"),
              "/home/ann/.config/com.tidewell.HarborTray.plist");
  }
  ::unsetenv("XDG_CONFIG_HOME");
  EXPECT_EQ(LinuxSettingsStore::defaultPath("/home/ann"), "/home/ann/.config/com.tidewell.HarborTray.plist");
  EXPECT_EQ(LinuxSettingsStore::defaultPath(""), "");
  if (old) ::setenv("XDG_CONFIG_HOME", saved.c_str(), 1);
}

TEST_F(LinuxSettingsStoreTest, WithoutAPathNothingIsStored) {
  LinuxSettingsStore store("", coder);
  EXPECT_FALSE(store.setBool("Key", true));
  EXPECT_TRUE(store.boolForKey("Key"));
}

TEST_F(LinuxSettingsStoreTest, ReadingWritesNothing) {
  const auto store = open();
  EXPECT_FALSE(store.boolForKey("Key"));
  EXPECT_TRUE(names().empty());
}

TEST_F(LinuxSettingsStoreTest, ValuesAreThereAfterARestart) {
  {
    auto store = open();
    EXPECT_TRUE(store.setBool("Bool", true));
    EXPECT_TRUE(store.setString("String", "15 Minutes"));
    EXPECT_TRUE(store.setData("Data", {1, 2}));
    EXPECT_TRUE(store.setDate("Date", Date(std::chrono::duration<double>(1.7e9 + 0.125))));
  }
  const auto store = open();
  EXPECT_TRUE(store.boolForKey("Bool"));
  EXPECT_EQ(store.stringForKey("String"), "15 Minutes");
  EXPECT_EQ(store.dataForKey("Data"), (Data{1, 2}));
  EXPECT_EQ(store.dateForKey("Date"), Date(std::chrono::duration<double>(1.7e9 + 0.125)));
  EXPECT_EQ(names(), std::set<std::string>{"settings.plist"});
}

TEST_F(LinuxSettingsStoreTest, TheFileIsPrivateWhateverTheUmask) {
  for (const mode_t mask : {0000, 0022, 0077, 0777}) {
    const mode_t old = ::umask(mask);
    auto store = open();
    EXPECT_TRUE(store.setString("Key", std::to_string(mask)));
    ::umask(old);
    EXPECT_EQ(modeOf(path), 0600u);
  }
}

TEST_F(LinuxSettingsStoreTest, AFileThatOthersCanReadBecomesPrivateWhenItIsRead) {
  write(PropertyList::Dictionary{{"Key", true}});
  ::chmod(path.c_str(), 0644);
  EXPECT_TRUE(open().boolForKey("Key"));
  EXPECT_EQ(modeOf(path), 0600u);
}

TEST_F(LinuxSettingsStoreTest, MissingFoldersAreMadePrivateAndExistingOnesLeftAsTheyAre) {
  ::chmod(folder.path("config").c_str(), 0755);
  path = folder.path("config/a/b/settings.plist");
  auto store = open();
  EXPECT_TRUE(store.setBool("Key", true));
  EXPECT_EQ(modeOf(folder.path("config")), 0755u);
  EXPECT_EQ(modeOf(folder.path("config/a")), 0700u);
  EXPECT_EQ(modeOf(folder.path("config/a/b")), 0700u);
  EXPECT_EQ(modeOf(path), 0600u);
}

TEST_F(LinuxSettingsStoreTest, KeysOfOthersStayAsTheyAre) {
  const PropertyList::Dictionary foreign{
      {"Number", UINT64_MAX},
      {"Negative", -5},
      {"Real", 0.1},
      {"List", PropertyList::Array{1, PropertyList::Dictionary{{"a", Data{1}}}}},
      {"Reference", PropertyList::Uid{7}}};
  write(foreign);
  auto store = open();
  EXPECT_TRUE(store.setBool("Key", true));
  PropertyList::Dictionary expected = foreign;
  expected["Key"] = true;
  EXPECT_EQ(stored(), PropertyList(expected));
}

TEST_F(LinuxSettingsStoreTest, WhatOthersWriteMeanwhileIsKept) {
  auto store = open();
  store.setString("Own", "old");
  store.setString("Both", "own");
  write(PropertyList::Dictionary{{"Own", "old"}, {"Both", "foreign"}, {"Foreign", "new"}});
  EXPECT_TRUE(store.setString("Own", "new"));
  EXPECT_EQ(stored(),
            PropertyList(PropertyList::Dictionary{{"Own", "new"}, {"Both", "own"}, {"Foreign", "new"}}));
  EXPECT_EQ(store.stringForKey("Foreign"), "new");
}

TEST_F(LinuxSettingsStoreTest, AnUnchangedValueIsWrittenWhenSomebodyElseReplacedIt) {
  auto store = open();
  store.setString("Key", "own");
  write(PropertyList::Dictionary{{"Key", "foreign"}});
  EXPECT_TRUE(store.setString("Key", "own"));
  EXPECT_EQ(stored(), PropertyList(PropertyList::Dictionary{{"Key", "own"}}));
}

TEST_F(LinuxSettingsStoreTest, AFileThatWasRemovedMeanwhileIsWrittenAgainInFull) {
  write(PropertyList::Dictionary{{"Old", 1}});
  auto store = open();
  store.setBool("Key", true);
  ::unlink(path.c_str());
  EXPECT_TRUE(store.setBool("Key", true));
  EXPECT_EQ(stored(), PropertyList(PropertyList::Dictionary{{"Old", 1}, {"Key", true}}));
}

TEST_F(LinuxSettingsStoreTest, AFileThatBecameUnreadableMeanwhileIsNotReplaced) {
  auto store = open();
  store.setBool("Key", true);
  ::unlink(path.c_str());
  folder.makeFolder("config/settings.plist");
  EXPECT_FALSE(store.setBool("Key", false));
  EXPECT_TRUE(fs::is_directory(path));
  ::rmdir(path.c_str());
  EXPECT_TRUE(store.setBool("Key", false));
  EXPECT_EQ(stored(), PropertyList(PropertyList::Dictionary{{"Key", false}}));
}

TEST_F(LinuxSettingsStoreTest, ABrokenFileIsSetAsideByteForByteAndPrivate) {
  const Data good = *coder.encode(PropertyList::Dictionary{{"Key", true}});
  const std::string whole(good.begin(), good.end());
  const std::string broken[] = {
      "",
      "\0"s,
      "garbage",
      whole.substr(0, whole.size() - 1),
      whole.substr(0, 20),
      "<plist><dict>",
      "<plist><array/></plist>",  // no dictionary
      std::string(100'000, 'x'),
  };
  int number = 0;
  for (const std::string& bytes : broken) {
    folder.makeFile("config/settings.plist", bytes);
    ::chmod(path.c_str(), 0644);
    auto store = open();
    EXPECT_FALSE(store.boolForKey("Key"));
    const std::string aside = path + ".broken-" + std::to_string(++number);
    EXPECT_EQ(contentsOf(aside), bytes);
    EXPECT_TRUE(fs::exists(aside));
    EXPECT_EQ(modeOf(aside), 0600u);
    EXPECT_FALSE(fs::exists(path));
    EXPECT_TRUE(store.setBool("Key", true));
    EXPECT_EQ(stored(), PropertyList(PropertyList::Dictionary{{"Key", true}}));
    EXPECT_EQ(contentsOf(aside), bytes);
  }
}

TEST_F(LinuxSettingsStoreTest, AFileThatIsTooLargeIsSetAsideUnread) {
  folder.makeFile("config/settings.plist");
  ASSERT_EQ(::truncate(path.c_str(), static_cast<off_t>(LinuxSettingsStore::kLargestFile) + 1), 0);
  auto store = open();
  EXPECT_EQ(fs::file_size(path + ".broken-1"), LinuxSettingsStore::kLargestFile + 1);
  EXPECT_TRUE(store.setBool("Key", true));
}

TEST_F(LinuxSettingsStoreTest, ValuesThatWouldMakeTheFileTooLargeAreNotTaken) {
  auto store = open();
  store.setString("Key", "old");
  EXPECT_FALSE(store.setData("Large", Data(LinuxSettingsStore::kLargestFile)));
  EXPECT_TRUE(store.setString("Key", "new"));
  EXPECT_EQ(stored(), PropertyList(PropertyList::Dictionary{{"Key", "new"}}));
}

// Runs in a process of its own, without the superuser's rights.
bool holdsForAnOrdinaryUser(const std::string& folder, const std::function<bool()>& claim) {
  constexpr uid_t kNobody = 65534;
  const bool isSuperuser = ::geteuid() == 0;
  if (isSuperuser) {
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
      if (::lchown(entry.path().c_str(), kNobody, kNobody) != 0) return false;
    }
    if (::chown(folder.c_str(), kNobody, kNobody) != 0) return false;
  }
  const pid_t child = ::fork();
  if (child == 0) {
    if (isSuperuser && (::setgid(kNobody) != 0 || ::setuid(kNobody) != 0)) ::_exit(2);
    ::_exit(claim() ? 0 : 1);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST_F(LinuxSettingsStoreTest, AFileThatMayNotBeReadIsLeftAndNothingIsWritten) {
  write(PropertyList::Dictionary{{"Key", true}});
  const std::string before = contentsOf(path);
  ::chmod(path.c_str(), 0);
  EXPECT_TRUE(holdsForAnOrdinaryUser(folder.path(), [&] {
    auto store = open();
    const bool read = store.boolForKey("Key");
    const bool written = store.setString("Other", "a") || store.setString("Other", "a");
    ::chmod(path.c_str(), 0600);
    const bool writtenLater = store.setString("Other", "b");
    return !read && !written && !writtenLater && store.stringForKey("Other") == "b";
  }));
  EXPECT_EQ(contentsOf(path), before);
  EXPECT_EQ(names(), std::set<std::string>{"settings.plist"});
}

TEST_F(LinuxSettingsStoreTest, InAFolderThatMayNotBeWrittenToWritesFailAndReadsWork) {
  write(PropertyList::Dictionary{{"Key", true}});
  const std::string before = contentsOf(path);
  ::chmod(folder.path("config").c_str(), 0500);
  EXPECT_TRUE(holdsForAnOrdinaryUser(folder.path(), [&] {
    auto store = open();
    const bool failed = !store.setBool("Key", false) && !store.boolForKey("Key");
    ::chmod(folder.path("config").c_str(), 0700);
    return failed && store.setBool("Key", false);
  }));
  EXPECT_EQ(stored(), PropertyList(PropertyList::Dictionary{{"Key", false}}));
}

TEST_F(LinuxSettingsStoreTest, ABrokenFileThatCannotBeSetAsideIsLeft) {
  folder.makeFile("config/settings.plist", "broken");
  ::chmod(folder.path("config").c_str(), 0500);
  EXPECT_TRUE(holdsForAnOrdinaryUser(folder.path(), [&] {
    auto store = open();
    ::chmod(folder.path("config").c_str(), 0700);
    return !store.setBool("Key", true);
  }));
  EXPECT_EQ(contentsOf(path), "broken");
}

TEST_F(LinuxSettingsStoreTest, WhatIsNoFileIsLeftWithoutWaiting) {
  const std::function<void()> kinds[] = {
      [&] { ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0); },
      [&] { ASSERT_EQ(::mkdir(path.c_str(), 0700), 0); },
      [&] { ASSERT_EQ(::symlink("/dev/zero", path.c_str()), 0); },
      [&] { ASSERT_EQ(::symlink("settings.plist", path.c_str()), 0); },
  };
  for (const auto& make : kinds) {
    make();
    auto store = open();
    EXPECT_FALSE(store.setBool("Key", true));
    EXPECT_TRUE(store.boolForKey("Key"));
    EXPECT_EQ(names(), std::set<std::string>{"settings.plist"});
    fs::remove(path);
  }
}

TEST_F(LinuxSettingsStoreTest, ALinkStaysALinkAndTheFileBehindItIsWritten) {
  folder.makeFolder("dotfiles");
  for (const std::string& target : {folder.path("dotfiles/absolute.plist"), "../dotfiles/relative.plist"s}) {
    ::unlink(path.c_str());
    ASSERT_EQ(::symlink(target.c_str(), path.c_str()), 0);
    auto store = open();
    EXPECT_TRUE(store.setBool("Key", true)) << "the file behind the link is made";
    EXPECT_TRUE(store.setBool("Key", false));
    EXPECT_TRUE(fs::is_symlink(path));
    EXPECT_EQ(stored(), PropertyList(PropertyList::Dictionary{{"Key", false}}));
    EXPECT_EQ(names(), std::set<std::string>{"settings.plist"});
  }
}

TEST_F(LinuxSettingsStoreTest, ABrokenFileBehindALinkIsSetAsideBesideIt) {
  folder.makeFile("dotfiles/real.plist", "broken");
  ASSERT_EQ(::symlink("../dotfiles/real.plist", path.c_str()), 0);
  auto store = open();
  EXPECT_EQ(contentsOf(folder.path("dotfiles/real.plist.broken-1")), "broken");
  EXPECT_TRUE(store.setBool("Key", true));
  EXPECT_TRUE(fs::is_symlink(path));
  EXPECT_EQ(stored(), PropertyList(PropertyList::Dictionary{{"Key", true}}));
}

TEST_F(LinuxSettingsStoreTest, LeftoversOfEndedProcessesAreRemovedAndOthersStay) {
  const pid_t ended = ::fork();
  if (ended == 0) ::_exit(0);
  ::waitpid(ended, nullptr, 0);
  folder.makeFile("config/.settings.plist." + std::to_string(ended) + ".tmp", "half");
  const std::set<std::string> foreign = {".settings.plist." + std::to_string(::getppid()) + ".tmp",
                                         ".settings.plist.tmp", ".settings.plist.x.tmp", "notes.tmp"};
  for (const std::string& name : foreign)
    folder.makeFile("config/" + name);
  open();
  EXPECT_EQ(names(), foreign);
}

TEST_F(LinuxSettingsStoreTest, ALeftoverWithThisProcessesNumberIsNotInTheWay) {
  folder.makeFile("config/.settings.plist." + std::to_string(::getpid()) + ".tmp", "half");
  auto store = open();
  EXPECT_TRUE(store.setBool("Key", true));
  EXPECT_EQ(names(), std::set<std::string>{"settings.plist"});
}

// Lets the process write no file beyond a size, which fails like a full disk.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) : oldAction_(::signal(SIGXFSZ, SIG_IGN)) {
    ::getrlimit(RLIMIT_FSIZE, &old_);
    const rlimit limit{bytes, old_.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit() {
    ::setrlimit(RLIMIT_FSIZE, &old_);
    ::signal(SIGXFSZ, oldAction_);
  }

 private:
  void (*oldAction_)(int);
  rlimit old_{};
};

TEST_F(LinuxSettingsStoreTest, WithTheDiskFullTheOldFileStaysAndALaterWriteStoresEverything) {
  auto store = open();
  ASSERT_TRUE(store.setString("Key", "old"));
  const std::string before = contentsOf(path);
  bool written = true;
  bool writtenSmall = true;
  {
    const FileSizeLimit limit(4096);
    written = store.setData("Large", Data(100'000, 7));
    writtenSmall = store.setString("Key", "new");
  }
  EXPECT_FALSE(written);
  EXPECT_FALSE(writtenSmall);
  EXPECT_EQ(contentsOf(path), before);
  EXPECT_EQ(names(), std::set<std::string>{"settings.plist"}) << "nothing half-written is left";
  EXPECT_EQ(store.dataForKey("Large"), Data(100'000, 7));
  EXPECT_EQ(store.stringForKey("Key"), "new");
  EXPECT_TRUE(store.setBool("Other", true));
  EXPECT_EQ(stored(), PropertyList(PropertyList::Dictionary{
                          {"Key", "new"}, {"Large", Data(100'000, 7)}, {"Other", true}}));
}

}  // namespace
}  // namespace harbor
