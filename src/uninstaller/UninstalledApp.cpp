#include "uninstaller/UninstalledApp.h"

#include <utility>

#include "platform/PropertyListCoding.h"

namespace harbor {
namespace {

constexpr const char* kFilePath = "filePath";
constexpr const char* kFileSize = "fileSize";
constexpr const char* kIsSelected = "isSelected";
constexpr const char* kAppName = "appName";
constexpr const char* kAppRelatedData = "appRelatedData";

PropertyList toPropertyList(const AppRelatedData& item) {
  PropertyList::Dictionary dictionary{{kFileSize, item.fileSize}, {kIsSelected, item.isSelected}};
  if (item.filePath) dictionary.emplace(kFilePath, fileUrlToPropertyList(*item.filePath));
  return dictionary;
}

PropertyList toPropertyList(const UninstalledApp& app) {
  PropertyList::Array items;
  items.reserve(app.appRelatedData.size());
  for (const AppRelatedData& item : app.appRelatedData)
    items.push_back(toPropertyList(item));
  PropertyList::Dictionary dictionary{{kAppRelatedData, std::move(items)}};
  if (app.appName) dictionary.emplace(kAppName, fileUrlToPropertyList(*app.appName));
  return dictionary;
}

// Reads an optional URL; false when something stands there that is no URL.
bool readUrl(const PropertyList& record, const char* key, std::optional<FileUrl>& url) {
  const PropertyList* value = record.find(key);
  if (!value) return true;
  url = fileUrlFromPropertyList(*value);
  return url.has_value();
}

std::optional<AppRelatedData> readItem(const PropertyList& record) {
  AppRelatedData item;
  const PropertyList* size = record.find(kFileSize);
  const PropertyList* selected = record.find(kIsSelected);
  if (!size || !selected || !readUrl(record, kFilePath, item.filePath)) return std::nullopt;
  const auto bytes = size->asUnsigned();
  const bool* flag = selected->as<bool>();
  if (!bytes || !flag) return std::nullopt;
  item.fileSize = *bytes;
  item.isSelected = *flag;
  return item;
}

std::shared_ptr<UninstalledApp> readApp(const PropertyList& record) {
  auto app = std::make_shared<UninstalledApp>();
  if (!readUrl(record, kAppName, app->appName)) return nullptr;
  const PropertyList* items = record.find(kAppRelatedData);
  const auto* array = items ? items->as<PropertyList::Array>() : nullptr;
  if (!array) return nullptr;
  for (const PropertyList& element : *array) {
    auto item = readItem(element);
    if (!item) return nullptr;
    app->appRelatedData.push_back(std::move(*item));
  }
  return app;
}

}  // namespace

std::optional<Data> encodeUninstalledApps(const PropertyListCoder& coder, const UninstalledApps& apps) {
  PropertyList::Array records;
  records.reserve(apps.size());
  for (const auto& app : apps)
    records.push_back(toPropertyList(*app));
  return coder.encode(records);
}

std::optional<UninstalledApps> decodeUninstalledApps(const PropertyListCoder& coder, const Data& bytes) {
  const auto root = coder.decode(bytes);
  const auto* records = root ? root->as<PropertyList::Array>() : nullptr;
  if (!records) return std::nullopt;
  UninstalledApps apps;
  apps.reserve(records->size());
  for (const PropertyList& record : *records) {
    auto app = readApp(record);
    if (!app) return std::nullopt;
    apps.push_back(std::move(app));
  }
  return apps;
}

}  // namespace harbor
