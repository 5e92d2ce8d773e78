// Panes as records; a test uses the well and closes the window.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/ColourPane.h"

namespace harbor {

class MemoryColourPanes : public ColourPanes {
 public:
  class Pane : public ColourPane {
   public:
    Pane(MemoryColourPanes& owner, ColourPaneEvents events) : owner_(owner), events_(std::move(events)) {
      owner_.open.push_back(this);
      ++owner_.made;
    }
    ~Pane() override { std::erase(owner_.open, this); }

    void setContainer(const Colour& background, double radius) override {
      containerColour = background;
      cornerRadius = radius;
    }
    void setWellColour(const Colour& colour) override { well = colour; }
    Colour wellColour() const override { return well; }
    void setTitle(const std::string& newTitle) override { title = newTitle; }
    void showWindow() override { shown = true; }
    void orderFrontRegardless() override { ++ordersFront; }

    // What the user does.
    void choose(const Colour& colour) {
      well = colour;
      events_.colourChanged();
    }
    void close() {
      shown = false;
      const auto disappeared = events_.viewDidDisappear;
      disappeared();
    }

    std::string title;
    Colour containerColour;
    double cornerRadius = 0.0;
    Colour well;
    bool shown = false;
    int ordersFront = 0;

   private:
    MemoryColourPanes& owner_;
    ColourPaneEvents events_;
  };

  std::unique_ptr<ColourPane> make(ColourPaneEvents events) override {
    if (failsToMake) return nullptr;
    return std::make_unique<Pane>(*this, std::move(events));
  }

  std::vector<Pane*> open;  // those that exist, in the order in which they were made
  int made = 0;
  bool failsToMake = false;
};

}  // namespace harbor
