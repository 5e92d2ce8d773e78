// The user defaults as one binary property list, a private file that Python's plistlib and every other
// property-list tool can read and write.
#pragma once

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "platform/PropertyListCoder.h"
#include "platform/SettingsStore.h"
#include "platform/linux/DurableFile.h"

namespace harbor {

// The file is read once, in the binary or the XML form. One that is no property list, holds no dictionary or
// is larger than kLargestFile is set aside beside its place, byte for byte, and the run starts with an empty
// store; one that cannot be opened or read (or not be set aside) is left alone, and nothing is written in
// this run. Keys of others stay as they are. What others write while the program runs is kept: before each
// write the file is read again when it has changed, and only the keys that were set in this run are put over
// it.
class LinuxSettingsStore : public SettingsStore {
 public:
  static constexpr std::uint64_t kLargestFile = 256u << 20;

  // "com.tidewell.HarborTray.plist" in $XDG_CONFIG_HOME, which counts only when it is an absolute path, or
  // else in the folder ".config" of the home folder.
  static std::string defaultPath(const std::string& homeFolder);

  // The coder outlives the store. With an empty path nothing is read or written.
  LinuxSettingsStore(std::string path, const PropertyListCoder& coder);

  bool boolForKey(std::string_view key) const override;
  std::optional<std::string> stringForKey(std::string_view key) const override;
  std::optional<Data> dataForKey(std::string_view key) const override;
  std::optional<Date> dateForKey(std::string_view key) const override;
  bool setBool(std::string_view key, bool value) override;
  bool setString(std::string_view key, std::string_view value) override;
  bool setData(std::string_view key, const Data& value) override;
  bool setDate(std::string_view key, Date value) override;

 private:
  enum class Access { readWrite, leaveAlone };

  template <typename T>
  std::optional<T> valueForKey(std::string_view key) const;
  bool store(std::string_view key, PropertyList value);
  bool load();
  bool mergeForeignChanges();

  DurableFile file_;
  const PropertyListCoder& coder_;
  Access access_ = Access::readWrite;
  PropertyList root_;  // a dictionary: what the file holds once the next write succeeds
  std::set<std::string, std::less<>> ownKeys_;  // set in this run
  std::optional<DurableFile::Stamp> stamp_;     // of the file that root_ was last read from or written to
  bool hasUnwrittenValues_ = false;
};

}  // namespace harbor
