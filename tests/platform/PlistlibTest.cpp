// The settings file against Python's plistlib, which shares no code with the program, in both directions.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <string>

#include "platform/PropertyListCoding.h"
#include "platform/linux/LinuxSettingsStore.h"
#include "platform/plist/LibplistCoder.h"
#include "settings/ArchivedColour.h"
#include "settings/SettingsKeys.h"
#include "support/TemporaryFolder.h"

namespace harbor {
namespace {

namespace keys = settings_keys;

constexpr const char* kBooleans[] = {
    keys::startMessageAlertSuppression,
    keys::focusTintAlertSuppression,
    keys::sipStatusAlertSuppression,
    keys::hideDesktopIconsAlertSuppression,
    keys::launchAtLoginEnabled,
    keys::focusModeEnabled,
    keys::tintScreenEnabled,
    keys::hideDesktopIconsEnabled,
    keys::highlightMouseClicksEnabled,
    keys::preventSleepEnabled,
    keys::clipboardEnabled,
    keys::autoClearClipboardFormattingEnabled,
};
constexpr const char* kTexts[] = {
    keys::selectedDimColor,  keys::selectedOpacity,        keys::selectedTintScreenColor,
    keys::selectedIntensity, keys::selectedHighlightColor, keys::selectedSize,
    keys::selectedDuration,
};
constexpr const char* kColours[] = {keys::selectedCustomDimColor, keys::selectedCustomTintScreenColor};

const Colour kColour{0.25, 0.5, 1.0, 0.75};
const std::vector<std::string> kHistory{"newest", "Grüße, 東京 👩‍👩‍👧", "a\nb\tc"};
const std::vector<FileUrl> kBlacklist{{"/Applications/Zoom Room.app", true}, {"/usr/share/é.desktop", false}};
const Date kNextDate{std::chrono::seconds(1'709'208'000)};  // 2024-02-29 12:00:00

// What both sides take the settings to be, in Python; binary(value) is an encoded list.
constexpr const char* kPython = R"(
import datetime, plistlib, sys
def binary(value): return plistlib.dumps(value, fmt=plistlib.FMT_BINARY)
def uid(number): return plistlib.UID(number)
def named(name): return {'$classname': name, '$classes': [name, 'NSObject']}
booleans, texts, colours = (part.split(',') for part in sys.argv[3:6])
colour = {'$version': 100000, '$archiver': 'NSKeyedArchiver', '$top': {'root': uid(1)}, '$objects': ['$null',
    {'$class': uid(2), 'NSColorSpace': 1, 'NSRGB': b'0.25 0.5 1 0.75\0', 'NSComponents': b'0.25 0.5 1 0.75',
     'NSCustomColorSpace': uid(3)}, named('NSColor'),
    {'$class': uid(4), 'NSID': 7, 'NSModel': 1}, named('NSColorSpace')]}
history = ['newest', 'Grüße, 東京 👩‍👩‍👧', 'a\nb\tc']
blacklist = [{'relative': 'file:///Applications/Zoom%20Room.app/'}, {'relative': 'file:///usr/share/%C3%A9.desktop'}]
expected = {key: True for key in booleans}
expected.update({key: 'value of ' + key for key in texts})
expected['ReviewPromptNextDate'] = datetime.datetime(2024, 2, 29, 12)
expected['UninstalledApplications'] = binary([{'size': 2 ** 64 - 1, 'isDirectory': True}])
encoded = {**{key: colour for key in colours}, 'ClipboardContent': history,
           'ClipboardBlacklistedApplications': blacklist, 'HTUserApprovedFolderBookmarks': []}
action, path = sys.argv[1:3]
if action == 'read':
    with open(path, 'rb') as file:
        assert file.read(8) == b'bplist00'
        file.seek(0)
        stored = plistlib.load(file)
    for key in encoded:
        assert type(stored[key]) is bytes, key
        assert stored[key].startswith(b'bplist00'), key
        stored[key] = plistlib.loads(stored[key])
    wanted = {**expected, **encoded}
    wanted['UninstalledApplications'] = plistlib.loads(wanted['UninstalledApplications'])
    stored['UninstalledApplications'] = plistlib.loads(stored['UninstalledApplications'])
    assert stored == wanted, [key for key in {**stored, **wanted} if stored.get(key) != wanted.get(key)]
    assert all(stored[key] is True for key in booleans)
else:
    stored = {**expected, **{key: binary(value) for key, value in encoded.items()}}
    with open(path, 'wb') as file:
        plistlib.dump(stored, file, fmt=getattr(plistlib, action))
)";

template <std::size_t N>
std::string joined(const char* const (&names)[N]) {
  std::string text;
  for (const char* name : names)
    text += (text.empty() ? "" : ",") + std::string(name);
  return text;
}

struct PlistlibTest : testing::Test {
  TemporaryFolder folder;
  LibplistCoder coder;
  std::string path = folder.path("settings.plist");

  // Whether the script came to its end: "read" checks the file, the name of a format writes it.
  bool python(const std::string& action) const {
    const std::string script = folder.makeFile("script.py", kPython);
    const std::string command = "/usr/bin/python3 -X utf8 -B " + script + " " + action + " " + path + " " +
                                joined(kBooleans) + " " + joined(kTexts) + " " + joined(kColours);
    const int status = std::system(command.c_str());
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
  }

  void expectEverySetting(const SettingsStore& store) const {
    for (const char* key : kBooleans)
      EXPECT_TRUE(store.boolForKey(key)) << key;
    for (const char* key : kTexts)
      EXPECT_EQ(store.stringForKey(key), "value of " + std::string(key));
    for (const char* key : kColours)
      EXPECT_EQ(archivedColourForKey(store, coder, key), kColour) << key;
    EXPECT_EQ(decodeStrings(coder, store.dataForKey(keys::clipboardContent).value_or(Data{})), kHistory);
    EXPECT_EQ(
        decodeFileUrls(coder, store.dataForKey(keys::clipboardBlacklistedApplications).value_or(Data{})),
        kBlacklist);
    EXPECT_EQ(store.dateForKey(keys::reviewPromptNextDate), kNextDate);
    const auto records = coder.decode(store.dataForKey(keys::uninstalledApplications).value_or(Data{}));
    EXPECT_EQ(records, PropertyList(PropertyList::Array{
                           PropertyList::Dictionary{{"size", UINT64_MAX}, {"isDirectory", true}}}));
    EXPECT_TRUE(store.dataForKey(keys::userApprovedFolderBookmarks));
  }
};

TEST_F(PlistlibTest, ReadsEverySettingThatTheProgramWrote) {
  LinuxSettingsStore store(path, coder);
  for (const char* key : kBooleans)
    ASSERT_TRUE(store.setBool(key, true));
  for (const char* key : kTexts)
    ASSERT_TRUE(store.setString(key, "value of " + std::string(key)));
  for (const char* key : kColours)
    ASSERT_TRUE(setArchivedColour(store, coder, key, kColour));
  ASSERT_TRUE(store.setData(keys::clipboardContent, *encodeStrings(coder, kHistory)));
  ASSERT_TRUE(store.setData(keys::clipboardBlacklistedApplications, *encodeFileUrls(coder, kBlacklist)));
  ASSERT_TRUE(store.setDate(keys::reviewPromptNextDate, kNextDate));
  ASSERT_TRUE(
      store.setData(keys::uninstalledApplications, *coder.encode(PropertyList::Array{PropertyList::Dictionary{
                                                       {"size", UINT64_MAX}, {"isDirectory", true}}})));
  ASSERT_TRUE(store.setData(keys::userApprovedFolderBookmarks, *coder.encode(PropertyList::Array{})));
  expectEverySetting(store);
  EXPECT_TRUE(python("read"));
  ASSERT_TRUE(store.setBool(keys::focusModeEnabled, false));
  EXPECT_FALSE(python("read")) << "the script tells a wrong value";
}

TEST_F(PlistlibTest, WritesEverySettingSoThatTheProgramReadsIt) {
  for (const char* format : {"FMT_BINARY", "FMT_XML"}) {
    ASSERT_TRUE(python(format));
    LinuxSettingsStore store(path, coder);
    expectEverySetting(store);
    ASSERT_TRUE(store.setString(keys::selectedSize, "10"));
    ASSERT_TRUE(store.setString(keys::selectedSize, "value of SelectedSize"));
    EXPECT_TRUE(python("read")) << "what one wrote and the other rewrote is the same, from " << format;
  }
}

}  // namespace
}  // namespace harbor
