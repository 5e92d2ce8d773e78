#include "platform/linux/PlaceRow.h"

namespace harbor {
namespace {

const char* writtenBase(PlaceBase base) {
  switch (base) {
    case PlaceBase::home:
      return "~";
    case PlaceBase::config:
      return "$XDG_CONFIG_HOME";
    case PlaceBase::cache:
      return "$XDG_CACHE_HOME";
    case PlaceBase::data:
      return "$XDG_DATA_HOME";
    case PlaceBase::state:
      return "$XDG_STATE_HOME";
    case PlaceBase::downloads:
      return "$XDG_DOWNLOAD_DIR";
    case PlaceBase::system:
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
