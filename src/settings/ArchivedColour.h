// Colours in the settings database.
#pragma once

#include <optional>
#include <string_view>

#include "base/Colour.h"
#include "platform/PropertyListCoder.h"
#include "platform/SettingsStore.h"

namespace harbor {

// The colour under the key; nothing when the data is missing, is no archive, or holds something else.
std::optional<Colour> archivedColourForKey(const SettingsStore& settings, const PropertyListCoder& coder,
                                           std::string_view key);

// Stores the colour's archive; when it cannot be encoded the stored value stays as it is. False when nothing
// was stored.
bool setArchivedColour(SettingsStore& settings, const PropertyListCoder& coder, std::string_view key,
                       const Colour& colour);

}  // namespace harbor
