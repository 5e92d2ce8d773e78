#include "Fuzzer.h"
#include "platform/PropertyListCoding.h"
#include "platform/plist/LibplistCoder.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  using namespace harbor;
  const LibplistCoder coder;
  const Data data(bytes, bytes + size);
  if (const auto strings = decodeStrings(coder, data)) {
    const auto encoded = encodeStrings(coder, *strings);
    require(encoded && decodeStrings(coder, *encoded) == strings, "the texts are the same");
  }
  if (const auto urls = decodeFileUrls(coder, data)) {
    for (const FileUrl& url : *urls) {
      require(url.path.starts_with('/'), "a path is absolute");
      require(url.path.find('\0') == std::string::npos, "a path holds no zero byte");
    }
    const auto encoded = encodeFileUrls(coder, *urls);
    require(encoded && decodeFileUrls(coder, *encoded) == urls, "the URLs are the same");
  }
  return 0;
}
