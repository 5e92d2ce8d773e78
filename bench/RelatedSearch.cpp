// Searches for the related files of one application, for timing beside find: related-search HOME ROOT BUNDLE.
// Prints the number of items, and by how many kilobytes the search raised the program's peak of resident
// memory.
#include <cstdio>
#include <fstream>
#include <string>

#include "base/FileUrl.h"
#include "platform/icu/IcuText.h"
#include "uninstaller/RelatedFileSearch.h"

namespace {

// Not getrusage, which starts with the peak of the program that started this one.
long peakKilobytes() {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    if (word != "VmHWM:") continue;
    long kilobytes = 0;
    status >> kilobytes;
    return kilobytes;
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  using namespace harbor;
  if (argc != 4) return 2;
  const IcuText text;
  const RelatedFileSearch search{text, argv[1], argv[2], {}};
  const std::string name = stemOfPath(argv[3]);
  const long before = peakKilobytes();
  const auto items =
      search.findRelatedFiles(argv[3], {name, name, name, std::nullopt, "org.example." + name});
  std::printf("%zu %ld\n", items.size(), peakKilobytes() - before);
  return 0;
}
