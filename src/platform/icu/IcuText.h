// Unicode rules by ICU.
#pragma once

#include <memory>

#include "platform/Text.h"

namespace harbor {

// Safe to use from several threads at once.
class IcuText : public Text {
 public:
  std::string lowercased(std::string_view text) const override;
  std::string canonical(std::string_view text) const override;
  std::vector<std::string_view> graphemeClusters(std::string_view text) const override;
  std::string_view trimmed(std::string_view text) const override;
};

}  // namespace harbor
