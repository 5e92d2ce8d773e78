// Panels answered from a script and kept for inspection.
#pragma once

#include <deque>
#include <functional>
#include <vector>

#include "platform/OpenPanel.h"

namespace harbor {

class MemoryOpenPanel : public OpenPanel {
 public:
  // A folder that the request does not enable cannot be picked: the panel then ends as if cancelled.
  std::optional<FileUrl> run(const OpenPanelRequest& request) override {
    shown.push_back(request);
    if (whileShown) whileShown(request);
    if (answers.empty()) return std::nullopt;
    const std::optional<FileUrl> answer = answers.front();
    answers.pop_front();
    if (answer && request.shouldEnable && !request.shouldEnable(*answer)) return std::nullopt;
    return answer;
  }

  std::deque<std::optional<FileUrl>> answers;  // one a panel; when used up, every panel is cancelled
  std::vector<OpenPanelRequest> shown;
  std::function<void(const OpenPanelRequest&)> whileShown;
};

}  // namespace harbor
