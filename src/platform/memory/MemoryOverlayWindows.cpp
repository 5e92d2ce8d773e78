#include "platform/memory/MemoryOverlayWindows.h"

#include <utility>

namespace harbor {

MemoryOverlayWindow::MemoryOverlayWindow(MemoryOverlayWindows& owner, const OverlayWindowSpec& madeFrom)
    : spec(madeFrom),
      number(owner.server.nextNumber()),
      level(madeFrom.level),
      collectionBehaviour(madeFrom.collectionBehaviour),
      frame(madeFrom.frame),
      owner_(owner) {
  owner_.windows.push_back(this);
  ++owner_.made;
}

MemoryOverlayWindow::~MemoryOverlayWindow() {
  owner_.server.close(number);
  std::erase(owner_.windows, this);
}

void MemoryOverlayWindow::setFrame(const Rect& newFrame) {
  frame = newFrame;
  if (auto* window = owner_.server.find(number)) window->info.bounds = newFrame;
}

void MemoryOverlayWindow::orderFrontRegardless() {
  ++ordersFront;
  contentsWhenOrderedFront = contents;
  drawingFrameWhenOrderedFront = drawingFrame;
  frameWhenOrderedFront = frame;
  owner_.server.close(number);
  owner_.server.insert(entry());
}

void MemoryOverlayWindow::orderBelow(WindowNumber other) {
  ordersBelow.push_back(other);
  owner_.server.moveBelow(entry(), other);
}

void MemoryOverlayWindow::orderOut() {
  owner_.server.close(number);
}

bool MemoryOverlayWindow::isOnScreen() const {
  return owner_.server.find(number) != nullptr;
}

MemoryWindowServer::Window MemoryOverlayWindow::entry() const {
  return {{level, MemoryOverlayWindows::kOwnProcess, "Harbor Tray", std::nullopt, number, frame},
          false,
          ignoresMouseEvents,
          true};
}

}  // namespace harbor
