// The process as a record of what was asked of it.
#pragma once

#include <functional>
#include <vector>

#include "platform/Application.h"

namespace harbor {

class MemoryApplication : public Application {
 public:
  void setActivationPolicy(ActivationPolicy newPolicy) override {
    policy = newPolicy;
    if (whenPolicySet) whenPolicySet(newPolicy);
  }
  void activateIgnoringOtherApps() override { ++activations; }
  void terminate() override { terminated = true; }
  std::optional<std::string> bundleIdentifier() const override { return identifier; }
  std::string bundleName() const override { return name; }
  std::unique_ptr<CodeRequirement> compileCodeRequirement(std::string_view text) override {
    compiledRequirements.emplace_back(text);
    return compilesRequirements ? std::make_unique<CodeRequirement>() : nullptr;
  }

  ActivationPolicy policy = ActivationPolicy::accessory;
  std::function<void(ActivationPolicy)> whenPolicySet;
  int activations = 0;
  bool terminated = false;
  std::optional<std::string> identifier = "com.tidewell.HarborTray";
  std::string name = "Harbor Tray";
  bool compilesRequirements = true;
  std::vector<std::string> compiledRequirements;
};

}  // namespace harbor
