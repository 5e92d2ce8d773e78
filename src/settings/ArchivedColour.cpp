#include "settings/ArchivedColour.h"

namespace harbor {

std::optional<Colour> archivedColourForKey(const SettingsStore& settings, const PropertyListCoder& coder,
                                           std::string_view key) {
  const auto data = settings.dataForKey(key);
  return data ? coder.unarchiveColour(*data) : std::nullopt;
}

bool setArchivedColour(SettingsStore& settings, const PropertyListCoder& coder, std::string_view key,
                       const Colour& colour) {
  const auto data = coder.archiveColour(colour);
  return data && settings.setData(key, *data);
}

}  // namespace harbor
