#include "disk/FolderReader.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include "base/FileDescriptor.h"
#include "support/TemporaryFolder.h"

namespace harbor {
namespace {

TEST(WholeFolderReader, ReadsTheFolderFromItsStartEachTime) {
  TemporaryFolder root;
  root.makeFile("one");
  root.makeFile("two");
  const FileDescriptor folder(::open(root.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  FolderReader reader(FolderReader::Order::asStored);
  for (int time = 0; time < 3; ++time) {
    const auto result = reader.read(folder.get(), FolderReader::kLargestBatch);
    EXPECT_EQ(result.entries.size(), 2u) << time;
    EXPECT_TRUE(result.atEnd);
  }
}

}  // namespace
}  // namespace harbor
