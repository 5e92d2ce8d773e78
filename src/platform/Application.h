// The process as the desktop sees it.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace harbor {

// A regular application shows in the task bar or Dock and its windows take the keyboard; an accessory does
// neither.
enum class ActivationPolicy { regular, accessory, prohibited };

// A compiled code-signing requirement; opaque.
class CodeRequirement {
 public:
  virtual ~CodeRequirement() = default;
};

class Application {
 public:
  virtual ~Application() = default;

  virtual void setActivationPolicy(ActivationPolicy policy) = 0;
  // Brings the application's windows to the front, whatever application is active.
  virtual void activateIgnoringOtherApps() = 0;
  // Ends the program in an orderly way once the current event has been handled.
  virtual void terminate() = 0;
  virtual std::optional<std::string> bundleIdentifier() const = 0;
  // The name under which the application lists itself (its "CFBundleName").
  virtual std::string bundleName() const = 0;
  // Nothing when the text cannot be compiled or the platform has no code signing.
  virtual std::unique_ptr<CodeRequirement> compileCodeRequirement(std::string_view text) = 0;
};

}  // namespace harbor
