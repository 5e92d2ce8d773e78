// Modal alerts as NSAlert.
#pragma once

#include "platform/AlertPanel.h"

namespace harbor {

class MacAlertPanel : public AlertPanel {
 public:
  AlertResult run(const Alert& alert) override;
};

}  // namespace harbor
