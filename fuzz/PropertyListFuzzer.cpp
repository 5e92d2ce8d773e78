#include "Fuzzer.h"
#include "platform/plist/LibplistCoder.h"

// Whatever can be decoded can be encoded, and comes back the same. Compared as bytes, since a real can be no
// number.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  using namespace harbor;
  const LibplistCoder coder;
  const auto value = coder.decode(Data(bytes, bytes + size));
  if (!value) return 0;
  const auto encoded = coder.encode(*value);
  require(encoded.has_value(), "what was decoded can be encoded");
  const auto again = coder.decode(*encoded);
  require(again.has_value(), "what was encoded can be decoded");
  require(coder.encode(*again) == encoded, "the value is the same");
  return 0;
}
