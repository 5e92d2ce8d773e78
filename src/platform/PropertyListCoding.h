// Lists of texts and of file URLs in the encoding of the property-list encoder. Decoding is strict about
// types: one wrong entry fails the whole list.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/FileUrl.h"
#include "platform/PropertyListCoder.h"

namespace harbor {

// An array of strings. Encoding fails as PropertyListCoder::encode does.
std::optional<Data> encodeStrings(const PropertyListCoder& coder, const std::vector<std::string>& strings);
std::optional<std::vector<std::string>> decodeStrings(const PropertyListCoder& coder, const Data& bytes);

// One URL in its keyed encoding, {"relative": "file:///…"}; a relative URL with a "base" is resolved against
// it.
PropertyList fileUrlToPropertyList(const FileUrl& url);
std::optional<FileUrl> fileUrlFromPropertyList(const PropertyList& value);

// An array of such dictionaries.
std::optional<Data> encodeFileUrls(const PropertyListCoder& coder, const std::vector<FileUrl>& urls);
std::optional<std::vector<FileUrl>> decodeFileUrls(const PropertyListCoder& coder, const Data& bytes);

}  // namespace harbor
