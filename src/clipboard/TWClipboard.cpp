#include "clipboard/TWClipboard.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "platform/ApplicationListing.h"
#include "platform/PropertyListCoding.h"
#include "settings/SettingsKeys.h"

namespace harbor {
namespace {

bool contains(const std::vector<FileUrl>& urls, const FileUrl& url) {
  return std::find(urls.begin(), urls.end(), url) != urls.end();
}

std::optional<Data> encodeHistory(const PropertyListCoder& coder, const std::vector<SharedText>& entries) {
  return encodeStrings(coder, std::vector<std::string>(entries.begin(), entries.end()));
}

}  // namespace

void TWClipboard::load() {
  isClipboardEnabled = settings_.boolForKey(settings_keys::clipboardEnabled);

  const auto data = settings_.dataForKey(settings_keys::clipboardContent);
  auto entries = data ? decodeStrings(coder_, *data) : std::nullopt;
  if (!entries) return;
  for (std::string& entry : *entries) {
    if (clipboardData.size() >= static_cast<std::size_t>(clipboardSize)) break;
    clipboardData.emplace_back(std::move(entry));
  }
}

void TWClipboard::loadApplications() {
  applicationsSorted.clear();
  for (const FileUrl& folder : fileManager_.applicationsFolders(FileManager::Domain::system))
    appendApplications(bundles_, folder, applicationsSorted);

  const auto data = settings_.dataForKey(settings_keys::clipboardBlacklistedApplications);
  blacklistedApplicationsSorted =
      (data ? decodeFileUrls(coder_, *data) : std::nullopt).value_or(std::vector<FileUrl>());
  std::erase_if(blacklistedApplicationsSorted, [](const FileUrl& url) { return !existingFile(url.path); });

  std::erase_if(applicationsSorted, [this](const FileUrl& url) {
    return isBlacklisted(url) || contains(systemApplications, url);
  });
  sortApplications(bundles_, applicationsSorted);
  sortApplications(bundles_, blacklistedApplicationsSorted);
}

void TWClipboard::addEntry(const std::string& text) {
  if (text.empty() || !isClipboardEnabled) return;
  if (!clipboardData.empty() && clipboardData.front() == text) return;

  std::vector<SharedText> entries = clipboardData;
  if (entries.size() >= static_cast<std::size_t>(clipboardSize)) entries.pop_back();
  entries.insert(entries.begin(), SharedText(text));
  // A text that cannot be encoded must not enter the list: it would keep every later copy from being stored.
  const auto data = encodeHistory(coder_, entries);
  if (!data) return;
  clipboardData = std::move(entries);
  settings_.setData(settings_keys::clipboardContent, *data);
}

void TWClipboard::clearHistory() {
  clipboardData.clear();
  if (const auto data = encodeHistory(coder_, clipboardData))
    settings_.setData(settings_keys::clipboardContent, *data);
}

void TWClipboard::addToBlacklist(const FileUrl& application) {
  if (isBlacklisted(application)) return;
  blacklistedApplicationsSorted.push_back(application);
  storeBlacklist();
}

void TWClipboard::removeFromBlacklist(const FileUrl& application) {
  std::erase(blacklistedApplicationsSorted, application);
  storeBlacklist();
}

bool TWClipboard::isBlacklisted(const FileUrl& application) const {
  return contains(blacklistedApplicationsSorted, application);
}

void TWClipboard::storeBlacklist() {
  if (const auto data = encodeFileUrls(coder_, blacklistedApplicationsSorted))
    settings_.setData(settings_keys::clipboardBlacklistedApplications, *data);
}

}  // namespace harbor
