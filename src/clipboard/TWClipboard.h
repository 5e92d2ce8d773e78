// The clipboard history and the applications whose copies it ignores. Every mutation is stored at once; what
// is stored but cannot be decoded counts as empty.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/FileUrl.h"
#include "base/SharedText.h"
#include "platform/ApplicationBundles.h"
#include "platform/FileManager.h"
#include "platform/PropertyListCoder.h"
#include "platform/SettingsStore.h"

namespace harbor {

class TWClipboard {
 public:
  TWClipboard(SettingsStore& settings, const PropertyListCoder& coder, const FileManager& fileManager,
              const ApplicationBundles& bundles)
      : settings_(settings), coder_(coder), fileManager_(fileManager), bundles_(bundles) {}

  // Reads the flag, then the history. Of a stored history that is longer than `clipboardSize` the newest
  // entries are taken; the stored one keeps the others until the next copy is recorded.
  void load();

  // Reads the stored blacklist afresh, without applications that no longer exist, lists the applications of
  // the system's applications folders that may be added to it, and sorts both.
  void loadApplications();

  // Puts the text on top of the history, dropping the oldest entry of a full one. Ignored while the tool is
  // off, and for the empty text, the newest entry again, and a text that cannot be stored (one that is not
  // valid UTF-8 or holds a zero byte).
  void addEntry(const std::string& text);
  void clearHistory();

  // The lists that are offered follow at the next loadApplications.
  void addToBlacklist(const FileUrl& application);
  void removeFromBlacklist(const FileUrl& application);
  // Paths are compared character by character.
  bool isBlacklisted(const FileUrl& application) const;

  std::vector<FileUrl> systemApplications;  // kept apart: never offered for the blacklist
  std::vector<FileUrl> applicationsSorted;  // offered for the blacklist
  std::vector<FileUrl> blacklistedApplicationsSorted;
  int clipboardSize = 20;  // the most entries that the history keeps
  bool isClipboardEnabled = false;
  std::vector<SharedText> clipboardData;  // newest first

 private:
  void storeBlacklist();

  SettingsStore& settings_;
  const PropertyListCoder& coder_;
  const FileManager& fileManager_;
  const ApplicationBundles& bundles_;
};

}  // namespace harbor
