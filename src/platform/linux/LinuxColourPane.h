// A pane with a colour well: a small window with one button, which shows the colour and opens a colour
// chooser whose choice is taken up while it is being made.
#pragma once

#include <QPointer>
#include <QWidget>

#include "platform/ColourPane.h"
#include "platform/linux/UserTime.h"

class QColorDialog;
class QPushButton;

namespace harbor {

class PaneWindow;

class LinuxColourPane : public ColourPane {
 public:
  LinuxColourPane(ColourPaneEvents events, UserTime& userTime);
  ~LinuxColourPane() override;

  void setContainer(const Colour& background, double cornerRadius) override;
  void setWellColour(const Colour& colour) override;
  Colour wellColour() const override { return colour_; }
  void setTitle(const std::string& title) override;
  void showWindow() override;
  void orderFrontRegardless() override;

 private:
  void openChooser();
  void chosen(const Colour& colour);
  void closed();
  void showColour();

  ColourPaneEvents events_;
  UserTime& userTime_;
  Colour colour_;
  PaneWindow* window_;
  QPushButton* well_;
  QPointer<QColorDialog> chooser_;
};

}  // namespace harbor
