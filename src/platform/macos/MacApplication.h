// The process as an NSApplication.
#pragma once

#include "platform/Application.h"

namespace harbor {

class MacApplication : public Application {
 public:
  void setActivationPolicy(ActivationPolicy policy) override;
  void activateIgnoringOtherApps() override;
  void terminate() override;
  std::optional<std::string> bundleIdentifier() const override;
  std::string bundleName() const override;
  std::unique_ptr<CodeRequirement> compileCodeRequirement(std::string_view text) override;
};

}  // namespace harbor
