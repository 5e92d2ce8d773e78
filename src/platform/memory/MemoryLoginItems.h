// Login items as a record of what was asked.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/LoginItems.h"

namespace harbor {

class MemoryLoginItems : public LoginItems {
 public:
  bool setEnabled(std::string_view bundleIdentifier, State state) override {
    requests.emplace_back(bundleIdentifier, state);
    return registers;
  }

  std::vector<std::pair<std::string, State>> requests;
  bool registers = true;
};

}  // namespace harbor
