// A colour as the object graph of a keyed archive (NSKeyedArchiver), which is a property list in turn.
#pragma once

#include <optional>

#include "base/Colour.h"
#include "base/PropertyList.h"

namespace harbor {

// The archive of the colour, its components brought into 0.0 to 1.0; nothing when a component is not a finite
// number.
std::optional<PropertyList> archiveOfColour(const Colour& colour);

// The colour in the archive, its components brought into 0.0 to 1.0. Nothing when it is no archive, when its
// root object is not of class NSColor, or when the colour's space or numbers cannot be understood.
std::optional<Colour> colourInArchive(const PropertyList& archive);

}  // namespace harbor
