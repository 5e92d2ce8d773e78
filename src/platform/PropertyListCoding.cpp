#include "platform/PropertyListCoding.h"

#include <utility>

namespace harbor {
namespace {

constexpr const char* kRelativeKey = "relative";
constexpr const char* kBaseKey = "base";

template <typename Item, typename Reader>
std::optional<std::vector<Item>> decodeArray(const PropertyListCoder& coder, const Data& bytes, Reader read) {
  const auto root = coder.decode(bytes);
  if (!root) return std::nullopt;
  const auto* array = root->as<PropertyList::Array>();
  if (!array) return std::nullopt;
  std::vector<Item> items;
  items.reserve(array->size());
  for (const PropertyList& element : *array) {
    std::optional<Item> item = read(element);
    if (!item) return std::nullopt;
    items.push_back(std::move(*item));
  }
  return items;
}

}  // namespace

std::optional<Data> encodeStrings(const PropertyListCoder& coder, const std::vector<std::string>& strings) {
  return coder.encode(PropertyList::Array(strings.begin(), strings.end()));
}

std::optional<std::vector<std::string>> decodeStrings(const PropertyListCoder& coder, const Data& bytes) {
  return decodeArray<std::string>(coder, bytes,
                                  [](const PropertyList& element) -> std::optional<std::string> {
                                    if (const auto* text = element.as<std::string>()) return *text;
                                    return std::nullopt;
                                  });
}

PropertyList fileUrlToPropertyList(const FileUrl& url) {
  return PropertyList::Dictionary{{kRelativeKey, url.absoluteString()}};
}

std::optional<FileUrl> fileUrlFromPropertyList(const PropertyList& value) {
  const PropertyList* relative = value.find(kRelativeKey);
  if (!relative || !relative->as<std::string>()) return std::nullopt;
  const std::string& text = *relative->as<std::string>();
  const PropertyList* base = value.find(kBaseKey);
  if (!base || text.find("://") != std::string::npos) return FileUrl::parse(text);

  const auto baseUrl = fileUrlFromPropertyList(*base);
  if (!baseUrl) return std::nullopt;
  if (text.starts_with('/')) return FileUrl::parse("file://" + text);
  std::string folder = baseUrl->absoluteString();
  folder.erase(folder.rfind('/') + 1);
  return FileUrl::parse(folder + text);
}

std::optional<Data> encodeFileUrls(const PropertyListCoder& coder, const std::vector<FileUrl>& urls) {
  PropertyList::Array array;
  array.reserve(urls.size());
  for (const FileUrl& url : urls)
    array.push_back(fileUrlToPropertyList(url));
  return coder.encode(array);
}

std::optional<std::vector<FileUrl>> decodeFileUrls(const PropertyListCoder& coder, const Data& bytes) {
  return decodeArray<FileUrl>(coder, bytes, fileUrlFromPropertyList);
}

}  // namespace harbor
