// Property lists by libplist, behind a check that keeps hostile input from exhausting stack or memory.
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
