// Property lists for platforms without Foundation: the binary form by a reader and writer of our own, the XML
// form by libplist, both behind limits that keep hostile input from exhausting stack, memory or time.
#pragma once

#include "platform/PropertyListCoder.h"

namespace harbor {

class LibplistCoder : public PropertyListCoder {
 public:
  std::optional<Data> encode(const PropertyList& value) const override;
  std::optional<PropertyList> decode(const Data& bytes) const override;
  std::optional<Data> archiveColour(const Colour& colour) const override;
  std::optional<Colour> unarchiveColour(const Data& bytes) const override;
};

}  // namespace harbor
