// The power manager's assertions.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace harbor {

class PowerManager {
 public:
  using AssertionIdentifier = std::uint32_t;
  using AssertionLevel = std::uint32_t;

  static constexpr std::string_view kNoDisplaySleepAssertion = "NoDisplaySleepAssertion";
  static constexpr AssertionLevel kAssertionLevelOn = 255;

  virtual ~PowerManager() = default;

  // Asserts the type for as long as it is not released; creating one of kNoDisplaySleepAssertion also counts
  // as user activity and resets the display's idle timer. Nothing when the platform refuses, as it may while
  // a screen saver runs that the activity would end.
  virtual std::optional<AssertionIdentifier> createAssertion(std::string_view type, AssertionLevel level,
                                                             std::string_view name) = 0;
  virtual void releaseAssertion(AssertionIdentifier identifier) = 0;
};

}  // namespace harbor
