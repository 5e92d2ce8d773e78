// The settings of desktop programs that a wallpaper is read from.

#include "Fuzzer.h"
#include "platform/linux/WallpaperSettings.h"

namespace {

bool isColour(const harbor::Colour& colour) {
  for (const double channel : {colour.red, colour.green, colour.blue}) {
    if (!(channel >= 0.0 && channel <= 1.0)) return false;
  }
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  for (const auto parse : {harbor::parsePcmanfm, harbor::parseXfdesktop, harbor::parsePlasma}) {
    const auto wallpaper = parse(text);
    harbor::require(!wallpaper || isColour(wallpaper->background), "a color's parts are from 0 to 1");
  }
  return 0;
}
