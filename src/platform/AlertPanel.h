// Modal alerts.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace harbor {

struct Alert {
  std::string title;                 // the message, plain text
  std::string text;                  // the informative text, plain text; may be empty
  std::vector<std::string> buttons;  // in order; the first is the default one, the last the cancelling one
  std::optional<std::string> suppressionTitle;  // the check box under the text; absent: none is shown
};

struct AlertResult {
  // The index into Alert::buttons of the button that ended the alert; absent when the program ends first,
  // which is no answer.
  std::optional<int> button = 0;
  bool suppressionTicked = false;  // false when no box was shown
};

class AlertPanel {
 public:
  virtual ~AlertPanel() = default;

  // Shows the alert in front of everything and blocks the caller until it is dismissed, while timers go on.
  // Escape and closing count as the last button. Until it returns, menu actions only bring the alert to the
  // front. Whoever gets no answer does nothing more.
  virtual AlertResult run(const Alert& alert) = 0;
};

}  // namespace harbor
