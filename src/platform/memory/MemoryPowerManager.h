// Keeps which assertions were made and which are still held.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "platform/PowerManager.h"

namespace harbor {

class MemoryPowerManager : public PowerManager {
 public:
  struct Assertion {
    std::string type;
    AssertionLevel level = 0;
    std::string name;
    friend bool operator==(const Assertion&, const Assertion&) = default;
  };

  std::optional<AssertionIdentifier> createAssertion(std::string_view type, AssertionLevel level,
                                                     std::string_view name) override {
    ++attempts;
    if (refuses) return std::nullopt;
    created.push_back({std::string(type), level, std::string(name)});
    const auto identifier = static_cast<AssertionIdentifier>(created.size());
    held.insert(identifier);
    return identifier;
  }
  void releaseAssertion(AssertionIdentifier identifier) override { held.erase(identifier); }

  bool refuses = false;
  int attempts = 0;
  std::vector<Assertion> created;
  std::set<AssertionIdentifier> held;
};

}  // namespace harbor
