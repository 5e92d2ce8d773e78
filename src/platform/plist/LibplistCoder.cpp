#include "platform/plist/LibplistCoder.h"

#include "platform/plist/BinaryPropertyList.h"
#include "platform/plist/ColourArchive.h"
#include "platform/plist/XmlPropertyList.h"

namespace harbor {

std::optional<Data> LibplistCoder::encode(const PropertyList& value) const {
  return writeBinaryPropertyList(value);
}

std::optional<PropertyList> LibplistCoder::decode(const Data& bytes) const {
  return isBinaryPropertyList(bytes) ? readBinaryPropertyList(bytes) : readXmlPropertyList(bytes);
}

std::optional<Data> LibplistCoder::archiveColour(const Colour& colour) const {
  const auto archive = archiveOfColour(colour);
  return archive ? encode(*archive) : std::nullopt;
}

std::optional<Colour> LibplistCoder::unarchiveColour(const Data& bytes) const {
  const auto archive = decode(bytes);
  return archive ? colourInArchive(*archive) : std::nullopt;
}

}  // namespace harbor
