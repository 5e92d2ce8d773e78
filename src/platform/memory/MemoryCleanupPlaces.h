// The places that a test adds to the cleanups; none until it does.
#pragma once

#include <map>

#include "platform/CleanupPlaces.h"

namespace harbor {

class MemoryCleanupPlaces : public CleanupPlaces {
 public:
  std::vector<CleanupPlace> placesOfCategory(CleanupCategory category) const override {
    const auto places = ofCategory.find(category);
    return places == ofCategory.end() ? std::vector<CleanupPlace>{} : places->second;
  }
  std::vector<CleanupPlace> placesOfTarget(PrivacyTarget target) const override {
    const auto places = ofTarget.find(target);
    return places == ofTarget.end() ? std::vector<CleanupPlace>{} : places->second;
  }
  std::vector<std::string> sandboxFolders() const override { return sandboxes; }
  std::optional<std::string> programUsing(PrivacyTarget target,
                                          const std::vector<RunningApplication>&) const override {
    const auto program = programs.find(target);
    return program == programs.end() ? std::nullopt : std::optional(program->second);
  }

  std::map<CleanupCategory, std::vector<CleanupPlace>> ofCategory;
  std::map<PrivacyTarget, std::vector<CleanupPlace>> ofTarget;
  std::vector<std::string> sandboxes;
  std::map<PrivacyTarget, std::string> programs;  // that are using a target's places
};

}  // namespace harbor
