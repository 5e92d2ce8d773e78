// The stored list of folder grants, and the bookmark data in it.
#include "Fuzzer.h"
#include "access/Bookmark.h"
#include "platform/linux/LinuxFolderBookmarks.h"
#include "platform/plist/LibplistCoder.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  using namespace harbor;
  const LibplistCoder coder;
  const LinuxFolderBookmarks folders(coder);
  const Data data(bytes, bytes + size);
  folders.resolve(data);
  const auto bookmarks = decodeBookmarks(coder, data);
  if (!bookmarks) return 0;
  for (const Bookmark& bookmark : *bookmarks)
    folders.resolve(bookmark.data);
  // What has been read can be written and read again.
  const auto again = encodeBookmarks(coder, *bookmarks);
  require(again && decodeBookmarks(coder, *again) == bookmarks, "the grants are the same");
  return 0;
}
