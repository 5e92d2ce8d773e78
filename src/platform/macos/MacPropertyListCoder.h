// Property lists by Foundation's serialisation and colours by its keyed archives. References of keyed
// archives (Uid) cannot be expressed with it: a value that holds one is neither encoded nor decoded.
#pragma once

#include "platform/PropertyListCoder.h"

namespace harbor {

class MacPropertyListCoder : public PropertyListCoder {
 public:
  std::optional<Data> encode(const PropertyList& value) const override;
  std::optional<PropertyList> decode(const Data& bytes) const override;
  std::optional<Data> archiveColour(const Colour& colour) const override;
  std::optional<Colour> unarchiveColour(const Data& bytes) const override;
};

}  // namespace harbor
