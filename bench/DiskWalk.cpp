// Measures, empties or searches one folder, for timing beside the standard tools: disk-walk
// measure|empty|partial PATH.
#include <cstdio>
#include <string_view>

#include "base/FileUrl.h"
#include "disk/FileRemoval.h"
#include "disk/FolderMeasure.h"

int main(int argc, char** argv) {
  using namespace harbor;
  if (argc != 3) return 2;
  const std::string_view task = argv[1];
  const std::string path = argv[2];
  CleanupStatus status;
  FileRemoval removal(homeFolderOfUserDatabase, status);
  RemovalOutcome outcome;
  if (task == "measure") outcome.bytes = measureFolder(path).bytes;
  if (task == "empty") outcome = removal.emptyFolder(path);
  if (task == "partial") {
    outcome =
        removal.removeMatches(path, [](std::string_view name) { return pathExtension(name) == "download"; });
  }
  std::printf("%llu\n", static_cast<unsigned long long>(outcome.bytes));
  return outcome.refusal || outcome.error != 0 ? 1 : 0;
}
