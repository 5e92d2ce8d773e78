// The wall clock.
#pragma once

#include "base/PropertyList.h"

namespace harbor {

class Clock {
 public:
  virtual ~Clock() = default;
  virtual Date now() const = 0;
};

}  // namespace harbor
