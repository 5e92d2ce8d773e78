// Overlay windows as records that stand in the stack of the window server in memory.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/OverlayWindows.h"
#include "platform/memory/MemoryWindowServer.h"

namespace harbor {

class MemoryOverlayWindows;

class MemoryOverlayWindow : public OverlayWindow {
 public:
  MemoryOverlayWindow(MemoryOverlayWindows& owner, const OverlayWindowSpec& madeFrom);
  ~MemoryOverlayWindow() override;

  void setBackgroundColour(const Colour& colour) override { backgroundColour = colour; }
  void setIgnoresMouseEvents() override { ignoresMouseEvents = true; }
  void setLevel(WindowLevel newLevel) override { level = newLevel; }
  void setCollectionBehaviour(CollectionBehaviour behaviour) override { collectionBehaviour = behaviour; }
  void setFrame(const Rect& newFrame) override;
  void setContents(const Image& image) override { contents = image; }
  void setDrawing(const Drawing& newDrawing, const Rect& newFrame) override {
    drawing = newDrawing;
    drawingFrame = newFrame;
    ++drawings;
  }
  void orderFrontRegardless() override;
  void orderBelow(WindowNumber other) override;
  void orderOut() override;
  void onDisplaced(std::function<void()> handler) override { displaced_ = std::move(handler); }

  // What the desktop does that keeps the window over others.
  void displace() {
    orderOut();
    if (displaced_) displaced_();
  }

  bool isOnScreen() const;

  const OverlayWindowSpec spec;
  const WindowNumber number;
  WindowLevel level;
  CollectionBehaviour collectionBehaviour;
  Rect frame;
  std::optional<Colour> backgroundColour;
  bool ignoresMouseEvents = false;
  std::optional<Image> contents;
  std::optional<Drawing> drawing;
  Rect drawingFrame;
  int drawings = 0;
  int ordersFront = 0;
  // What the window was when it was last ordered in front.
  std::optional<Image> contentsWhenOrderedFront;
  Rect drawingFrameWhenOrderedFront;
  Rect frameWhenOrderedFront;
  std::vector<WindowNumber> ordersBelow;

 private:
  MemoryWindowServer::Window entry() const;

  MemoryOverlayWindows& owner_;
  std::function<void()> displaced_;
};

class MemoryOverlayWindows : public OverlayWindows {
 public:
  explicit MemoryOverlayWindows(MemoryWindowServer& windowServer) : server(windowServer) {}

  std::optional<std::string> unavailableReason() const override { return unavailable; }
  void notify(const std::string& title, const std::string& text) override {
    notifications.emplace_back(title, text);
  }
  std::unique_ptr<OverlayWindow> make(const OverlayWindowSpec& spec) override {
    return std::make_unique<MemoryOverlayWindow>(*this, spec);
  }

  // This process, as the owner of the windows in the window list.
  static constexpr std::int32_t kOwnProcess = 1;

  MemoryWindowServer& server;
  std::vector<MemoryOverlayWindow*> windows;  // those that exist, in the order in which they were made
  int made = 0;
  std::vector<std::pair<std::string, std::string>> notifications;  // title and text
  std::optional<std::string> unavailable;
};

}  // namespace harbor
