// All messages to the user: a confirmation with two buttons, and an alert with an optional check box. A
// ticked box of one of four known alerts is remembered; whether to show an alert at all is the caller's
// decision.
#pragma once

#include <string>
#include <string_view>

#include "platform/AlertPanel.h"
#include "platform/SettingsStore.h"

namespace harbor {

class TWDialog {
 public:
  struct ShowResult {
    bool firstButtonPressed = false;  // false also when the program ends before there is an answer
    bool boxTicked = false;           // false when no box was shown
  };

  TWDialog(AlertPanel& panel, SettingsStore& settings) : panel_(panel), settings_(settings) {}

  // Asks; true exactly when the confirm button, which is the first and the default one, ended the alert.
  bool confirm(const std::string& cancelTitle, const std::string& confirmTitle, const std::string& title,
               const std::string& text);

  // Tells. An empty second button title gives a single button, an empty check-box title no box. A ticked box
  // stores the suppression key that belongs to the alert's title; any other title stores nothing.
  ShowResult show(const std::string& secondButtonTitle, const std::string& firstButtonTitle,
                  const std::string& title, const std::string& text, const std::string& checkBoxTitle);

  // Makes every suppressed alert appear again.
  void resetWarnings();

  // The suppression key of an alert's title; empty for a title that has none.
  static std::string_view suppressionKeyForTitle(std::string_view title);

 private:
  AlertPanel& panel_;
  SettingsStore& settings_;
};

}  // namespace harbor
