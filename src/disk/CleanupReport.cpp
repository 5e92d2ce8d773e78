#include "disk/CleanupReport.h"

#include <cstdio>

#include "base/ByteCount.h"
#include "disk/CleanupPlan.h"
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
                       const std::vector<CleanupPlace>& places) {
  std::string list;
  for (const CleanupPlace& place : places)
    list += (list.empty() ? "" : ", ") + quotedForJson(place.path);
  return "  {\"category\": " + quotedForJson(category) + ", \"bytes\": " + std::to_string(measure.bytes) +
         ", \"items\": " + std::to_string(measure.items) + ", \"folders\": [" + list + "]}";
}

}  // namespace

std::string cleanupReport(const std::string& home, const ExternalVolumes& volumes,
                          const CleanupPlaces& places, ReportFormat format) {
  std::string table = "Category                         Size        Items\n";
  std::string json;
  for (const CleanupCategoryTexts& texts : cleanupCategories()) {
    const FolderMeasure measure = measureCategory(texts.category, home, volumes, places);
    if (format == ReportFormat::table) {
      table += tableLine(texts.title, measure);
    } else {
      json += (json.empty() ? "" : ",\n") +
              jsonObject(texts.title, measure, planOfCategory(texts.category, home, volumes, places));
    }
  }
  return format == ReportFormat::table ? table : "[\n" + json + "\n]\n";
}

}  // namespace harbor
