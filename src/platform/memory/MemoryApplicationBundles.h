// Application bundles by the Mac's rules: a path whose extension is "app", named after its file unless a test
// says otherwise.
#pragma once

#include <map>
#include <string>

#include "base/FileUrl.h"
#include "platform/ApplicationBundles.h"
#include "platform/Text.h"

namespace harbor {

class MemoryApplicationBundles : public ApplicationBundles {
 public:
  explicit MemoryApplicationBundles(const Text& text) : text_(text) {}

  bool isApplication(const std::string& path) const override { return pathExtension(path) == "app"; }
  std::string displayName(const std::string& path) const override {
    const auto entry = displayNames.find(path);
    return entry == displayNames.end() ? stemOfPath(path) : entry->second;
  }
  std::string sortKey(const std::string& path) const override {
    return text_.lowercased(lastPathComponent(path));
  }

  std::map<std::string, std::string> displayNames;

 private:
  const Text& text_;
};

}  // namespace harbor
