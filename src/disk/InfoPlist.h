// What an application says about itself.
#pragma once

#include <optional>
#include <string>

#include "base/PropertyList.h"
#include "platform/ApplicationBundles.h"
#include "platform/PropertyListCoder.h"

namespace harbor {

// The application's answers by the keys of an Info.plist: its own where it is no bundle folder, else those of
// its "/Contents/Info.plist". Nothing where that cannot be read as a property list.
std::optional<PropertyList> informationOfBundle(const std::string& path, const ApplicationBundles& bundles,
                                                const PropertyListCoder& propertyLists);

// The value of a key when it is text.
std::optional<std::string> textOfInformation(const std::optional<PropertyList>& information, const char* key);

}  // namespace harbor
