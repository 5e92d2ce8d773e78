#include "Fuzzer.h"
#include "platform/plist/LibplistCoder.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  using namespace harbor;
  const LibplistCoder coder;
  const auto colour = coder.unarchiveColour(Data(bytes, bytes + size));
  if (!colour) return 0;
  for (const double component : {colour->red, colour->green, colour->blue, colour->alpha})
    require(component >= 0.0 && component <= 1.0, "a component is in its range");
  const auto archived = coder.archiveColour(*colour);
  require(archived && coder.unarchiveColour(*archived) == colour, "the colour is the same");
  return 0;
}
