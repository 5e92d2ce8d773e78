// The rules of Unicode by Foundation's strings.
#pragma once

#include "platform/Text.h"

namespace harbor {

class MacText : public Text {
 public:
  std::string lowercased(std::string_view text) const override;
  std::string canonical(std::string_view text) const override;
  std::vector<std::string_view> graphemeClusters(std::string_view text) const override;
  std::string_view trimmed(std::string_view text) const override;
};

}  // namespace harbor
