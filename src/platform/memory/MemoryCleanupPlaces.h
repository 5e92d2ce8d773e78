// The places that a test adds to the cleanups; none until it does.
#pragma once

#include <map>
#include <set>

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
  std::optional<WithholdingNote> noteOfWithheld(const std::vector<std::string>& paths) const override {
    for (const std::string& path : paths) {
      if (withheld.contains(path)) return WithholdingNote{"It is withheld.", "settings:withheld"};
    }
    return std::nullopt;
  }
  std::optional<UsingProgram> programUsing(PrivacyTarget target, std::string_view bundleIdentifier,
                                           const std::vector<RunningApplication>& running) const override {
    const auto program = programs.find(target);
    if (program != programs.end()) return program->second;
    return CleanupPlaces::programUsing(target, bundleIdentifier, running);
  }

  std::map<CleanupCategory, std::vector<CleanupPlace>> ofCategory;
  std::map<PrivacyTarget, std::vector<CleanupPlace>> ofTarget;
  std::vector<std::string> sandboxes;
  std::set<std::string> withheld;                  // paths
  std::map<PrivacyTarget, UsingProgram> programs;  // that are using a target's places
};

}  // namespace harbor
