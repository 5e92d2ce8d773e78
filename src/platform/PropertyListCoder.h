// Property lists and colour archives as bytes, in the formats of the Mac's frameworks. Both directions are
// total: whatever the bytes are, decoding ends with a value or with nothing.
#pragma once

#include <optional>

#include "base/Colour.h"
#include "base/PropertyList.h"

namespace harbor {

class PropertyListCoder {
 public:
  virtual ~PropertyListCoder() = default;

  // A binary property list; nothing when a text in it is not valid UTF-8 or holds a zero byte.
  virtual std::optional<Data> encode(const PropertyList& value) const = 0;

  // Reads the binary and the XML form. Nothing when the bytes are neither, are damaged, or would unfold to an
  // unreasonable depth or number of values.
  virtual std::optional<PropertyList> decode(const Data& bytes) const = 0;

  // The keyed archive of a colour.
  virtual std::optional<Data> archiveColour(const Colour& colour) const = 0;

  // The colour in a keyed archive; nothing when the bytes are no archive or its root object is not a colour.
  virtual std::optional<Colour> unarchiveColour(const Data& bytes) const = 0;
};

}  // namespace harbor
