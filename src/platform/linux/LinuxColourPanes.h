// The panes with a colour well, as Qt windows.
#pragma once

#include "platform/ColourPane.h"

namespace harbor {

class LinuxColourPanes : public ColourPanes {
 public:
  std::unique_ptr<ColourPane> make(ColourPaneEvents events) override;
};

}  // namespace harbor
