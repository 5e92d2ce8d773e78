#include "disk/CleanupReport.h"

#include <cstdio>

#include "base/ByteCount.h"
#include "disk/TWFreeDiskSpace.h"

namespace harbor {
namespace {

std::string tableLine(const char* category, const FolderMeasure& measure) {
  char line[128];
  std::snprintf(line, sizeof line, "%-24s %12s %12llu\n", category, formatByteCount(measure.bytes).c_str(),
                static_cast<unsigned long long>(measure.items));
  return line;
}

std::string jsonObject(const char* category, const FolderMeasure& measure,
                       const std::vector<std::string>& folders) {
  std::string list;
  for (const std::string& folder : folders)
    list += (list.empty() ? "" : ", ") + quotedForJson(folder);
  return "  {\"category\": " + quotedForJson(category) + ", \"bytes\": " + std::to_string(measure.bytes) +
         ", \"items\": " + std::to_string(measure.items) + ", \"folders\": [" + list + "]}";
}

}  // namespace

std::string cleanupReport(const std::string& home, const ExternalVolumes& volumes, ReportFormat format) {
  std::string table = "Category                         Size        Items\n";
  std::string json;
  for (const CleanupCategoryTexts& texts : cleanupCategories()) {
    const FolderMeasure measure = measureCategory(texts.category, home, volumes);
    if (format == ReportFormat::table) {
      table += tableLine(texts.title, measure);
    } else {
      json += (json.empty() ? "" : ",\n") +
              jsonObject(texts.title, measure, foldersOfCategory(texts.category, home, volumes));
    }
  }
  return format == ReportFormat::table ? table : "[\n" + json + "\n]\n";
}

}  // namespace harbor
