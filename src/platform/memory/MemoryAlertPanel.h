// Alerts answered from a script and kept for inspection.
#pragma once

#include <deque>
#include <functional>
#include <vector>

#include "platform/AlertPanel.h"

namespace harbor {

class MemoryAlertPanel : public AlertPanel {
 public:
  AlertResult run(const Alert& alert) override {
    shown.push_back(alert);
    if (whileShown) whileShown(alert);
    if (answers.empty()) return {};
    AlertResult answer = answers.front();
    answers.pop_front();
    if (!alert.suppressionTitle) answer.suppressionTicked = false;
    return answer;
  }

  std::deque<AlertResult> answers;  // one an alert; when used up, the first button with the box not ticked
  std::vector<Alert> shown;
  std::function<void(const Alert&)> whileShown;  // what happens elsewhere while an alert is up
};

}  // namespace harbor
