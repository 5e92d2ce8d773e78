// The open panel.
#pragma once

#include "platform/OpenPanel.h"

namespace harbor {

class MacOpenPanel : public OpenPanel {
 public:
  std::optional<FileUrl> run(const OpenPanelRequest& request) override;
};

}  // namespace harbor
