#include "access/Bookmark.h"

#include "platform/PropertyListCoding.h"

namespace harbor {
namespace {

constexpr const char* kUrlKey = "url";
constexpr const char* kDataKey = "data";

std::optional<Bookmark> bookmarkFrom(const PropertyList& record) {
  const PropertyList* url = record.find(kUrlKey);
  const PropertyList* data = record.find(kDataKey);
  if (!url || !data || !data->as<Data>()) return std::nullopt;
  const auto fileUrl = fileUrlFromPropertyList(*url);
  if (!fileUrl) return std::nullopt;
  return Bookmark{*fileUrl, *data->as<Data>()};
}

}  // namespace

std::optional<Data> encodeBookmarks(const PropertyListCoder& coder, const std::vector<Bookmark>& bookmarks) {
  PropertyList::Array array;
  for (const Bookmark& bookmark : bookmarks) {
    array.push_back(
        PropertyList::Dictionary{{kUrlKey, fileUrlToPropertyList(bookmark.url)}, {kDataKey, bookmark.data}});
  }
  return coder.encode(array);
}

std::optional<std::vector<Bookmark>> decodeBookmarks(const PropertyListCoder& coder, const Data& bytes) {
  const auto root = coder.decode(bytes);
  const auto* array = root ? root->as<PropertyList::Array>() : nullptr;
  if (!array) return std::nullopt;
  std::vector<Bookmark> bookmarks;
  for (const PropertyList& record : *array) {
    auto bookmark = bookmarkFrom(record);
    if (!bookmark) return std::nullopt;
    bookmarks.push_back(std::move(*bookmark));
  }
  return bookmarks;
}

}  // namespace harbor
