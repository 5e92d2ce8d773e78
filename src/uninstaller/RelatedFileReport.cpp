#include "uninstaller/RelatedFileReport.h"

#include <sys/stat.h>

#include <cstdio>

#include "base/ByteCount.h"
#include "uninstaller/RelatedFileScan.h"

namespace harbor {
namespace {

std::string tableLine(const FileUrl& item, std::uint64_t bytes) {
  char sizes[64];
  std::snprintf(sizes, sizeof sizes, "%12s %16llu  ", formatByteCount(bytes).c_str(),
                static_cast<unsigned long long>(bytes));
  return sizes + textForTable(item.isDirectory ? item.path + "/" : item.path) + "\n";
}

std::string jsonObject(const FileUrl& item, std::uint64_t bytes) {
  return "  {\"path\": " + quotedForJson(item.path) + ", \"bytes\": " + std::to_string(bytes) +
         ", \"isFolder\": " + (item.isDirectory ? "true" : "false") + "}";
}

}  // namespace

bool hasRelatedFiles(const std::string& path, const ApplicationBundles& bundles) {
  struct stat status;
  if (::stat(path.c_str(), &status) != 0) return false;
  return S_ISDIR(status.st_mode) ? pathExtension(path) == "app" : bundles.ownInformation(path).has_value();
}

std::string relatedFileReport(const RelatedFileSearch& search, const std::string& bundlePath,
                              const BundleInformation& bundle, ReportFormat format) {
  std::string table = "        Size            Bytes  Item\n";
  std::string json;
  for (const FileUrl& item : search.findRelatedFiles(bundlePath, bundle)) {
    const std::uint64_t bytes = sizeOfRelatedFile(item.path);
    if (format == ReportFormat::table) {
      table += tableLine(item, bytes);
    } else {
      json += (json.empty() ? "" : ",\n") + jsonObject(item, bytes);
    }
  }
  return format == ReportFormat::table ? table : "[\n" + json + "\n]\n";
}

}  // namespace harbor
