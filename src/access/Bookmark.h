// One stored grant of access to a folder.
#pragma once

#include <optional>
#include <vector>

#include "base/FileUrl.h"
#include "base/PropertyList.h"
#include "platform/PropertyListCoder.h"

namespace harbor {

struct Bookmark {
  FileUrl url;  // the folder as the user picked it
  Data data;    // the platform's bookmark data for it

  friend bool operator==(const Bookmark&, const Bookmark&) = default;
};

// The list of grants in the encoding of the property-list encoder. Decoding is strict: one wrong record fails
// the whole list.
std::optional<Data> encodeBookmarks(const PropertyListCoder& coder, const std::vector<Bookmark>& bookmarks);
std::optional<std::vector<Bookmark>> decodeBookmarks(const PropertyListCoder& coder, const Data& bytes);

}  // namespace harbor
