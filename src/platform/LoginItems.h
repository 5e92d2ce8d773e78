// What the desktop starts when the user logs in.
#pragma once

#include <string_view>

namespace harbor {

class LoginItems {
 public:
  enum class State { disabled, enabled };

  virtual ~LoginItems() = default;

  // Has the program's login helper of that bundle identifier started at each login, or no longer. False when
  // that could not be registered, or when the user has forbidden it by the desktop's own means.
  virtual bool setEnabled(std::string_view bundleIdentifier, State state) = 0;
};

}  // namespace harbor
