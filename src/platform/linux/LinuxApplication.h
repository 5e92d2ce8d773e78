// The process as an X11 or Wayland desktop sees it.
#pragma once

#include "platform/Application.h"
#include "platform/linux/ModalWindows.h"
#include "platform/linux/UserTime.h"

namespace harbor {

// The program's identity: its bus name, its settings file and its desktop entry are called so.
inline constexpr char kApplicationIdentifier[] = "com.tidewell.HarborTray";
inline constexpr char kApplicationName[] = "Harbor Tray";

class LinuxApplication : public Application {
 public:
  LinuxApplication(ModalWindows& modalWindows, UserTime& userTime)
      : modalWindows_(modalWindows), userTime_(userTime) {}

  // Nothing to do: a program without windows is in no task bar, and each window says for itself whether it
  // wants to be.
  void setActivationPolicy(ActivationPolicy) override {}
  void activateIgnoringOtherApps() override;
  void terminate() override;
  std::optional<std::string> bundleIdentifier() const override { return kApplicationIdentifier; }
  std::string bundleName() const override { return kApplicationName; }
  std::unique_ptr<CodeRequirement> compileCodeRequirement(std::string_view) override { return nullptr; }

 private:
  ModalWindows& modalWindows_;
  UserTime& userTime_;
};

}  // namespace harbor
