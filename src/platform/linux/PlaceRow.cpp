#include "platform/linux/PlaceRow.h"

namespace harbor {
namespace {

const char* writtenBase(PlaceRow::Base base) {
  switch (base) {
    case PlaceRow::Base::home:
      return "~";
    case PlaceRow::Base::configHome:
      return "$XDG_CONFIG_HOME";
    case PlaceRow::Base::cacheHome:
      return "$XDG_CACHE_HOME";
    case PlaceRow::Base::dataHome:
      return "$XDG_DATA_HOME";
    case PlaceRow::Base::stateHome:
      return "$XDG_STATE_HOME";
    case PlaceRow::Base::downloads:
      return "$XDG_DOWNLOAD_DIR";
    case PlaceRow::Base::system:
      break;
  }
  return "";
}

}  // namespace

std::string writtenPath(const PlaceRow& row) {
  const std::string base = writtenBase(row.base);
  return *row.path ? base + "/" + row.path : base;
}

}  // namespace harbor
