#include "disk/CleanupReport.h"

#include <cstdio>

#include "base/ByteCount.h"
#include "base/Utf8.h"
#include "disk/TWFreeDiskSpace.h"

namespace harbor {
namespace {

// A text as a JSON string.
std::string quoted(const std::string& text) {
  const bool isText = isValidUtf8(text);
  std::string result = "\"";
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    if (character == '"' || character == '\\') {
      result += '\\';
      result += character;
    } else if (byte < 0x20 || byte == 0x7f) {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\u%04x", byte);
      result += escape;
    } else if (byte >= 0x80 && !isText) {
      result += "\\ufffd";
    } else {
      result += character;
    }
  }
  return result + "\"";
}

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
    list += (list.empty() ? "" : ", ") + quoted(folder);
  return "  {\"category\": " + quoted(category) + ", \"bytes\": " + std::to_string(measure.bytes) +
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
