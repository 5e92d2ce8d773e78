#include "overlays/HighlightController.h"

#include <array>
#include <cstddef>

#include "overlays/OverlaySection.h"
#include "settings/SettingsKeys.h"

namespace harbor {
namespace {

// The ring's side in points for each of TWHighlightMouseClicks::availableSizes.
constexpr std::array<double, TWHighlightMouseClicks::availableSizes.size()> kRingSizes{30, 40, 50,  60,  70,
                                                                                       80, 90, 100, 110, 120};

constexpr Colour kClear{0.0, 0.0, 0.0, 0.0};

constexpr auto kFollowedEvents =
    PointerEvents::moved | PointerEvents::leftDragged | PointerEvents::rightDragged;

}  // namespace

HighlightController::HighlightController(TWHighlightMouseClicks& model, SettingsStore& settings,
                                         WindowServer& windowServer, OverlayWindows& overlayWindows,
                                         PointerMonitor& pointerMonitor)
    : highlightMouseClicksModel(model),
      settings_(settings),
      windowServer_(windowServer),
      overlayWindows_(overlayWindows),
      pointerMonitor_(pointerMonitor) {}

void HighlightController::appendSection(Menu& menu, MenuBuild) {
  const TWHighlightMouseClicks& model = highlightMouseClicksModel;
  Menu submenu;
  submenu.push_back(menuItem(
      "Enable", [this](const MenuItem& sender) { highlightMouseClicksEnabled(sender); },
      stateFor(model.isHighlightMouseClicksEnabled)));
  submenu.push_back(MenuItem::separator());
  appendOptions(submenu, TWHighlightMouseClicks::availableHighlightColors, model.selectedHighlightColor,
                [this](const MenuItem& sender) { highlightColorClicked(sender); });
  submenu.push_back(MenuItem::separator());
  appendOptions(submenu, TWHighlightMouseClicks::availableSizes, model.selectedSize,
                [this](const MenuItem& sender) { sizeClicked(sender); });
  appendOverlaySection(menu, "Highlight Mouse Cursor", std::move(submenu),
                       model.isHighlightMouseClicksEnabled, overlayWindows_.unavailableReason());

  applyHighlight();
}

void HighlightController::highlightMouseClicksEnabled(const MenuItem& sender) {
  const bool switchesOn = sender.state != MenuItem::State::on;
  highlightMouseClicksModel.isHighlightMouseClicksEnabled = switchesOn;
  settings_.setBool(settings_keys::highlightMouseClicksEnabled, switchesOn);
  if (switchesOn) {
    applyHighlight();
  } else if (mouseWindow) {
    eventHandlerObject.reset();
    mouseWindow->orderOut();
  }
}

void HighlightController::highlightColorClicked(const MenuItem& sender) {
  highlightMouseClicksModel.selectedHighlightColor = sender.title;
  settings_.setString(settings_keys::selectedHighlightColor, sender.title);
  applyHighlight();
}

void HighlightController::sizeClicked(const MenuItem& sender) {
  highlightMouseClicksModel.selectedSize = sender.title;
  settings_.setString(settings_keys::selectedSize, sender.title);
  applyHighlight();
}

void HighlightController::applyHighlight() {
  if (!highlightMouseClicksModel.isHighlightMouseClicksEnabled) return;
  for (std::size_t i = 0; i < kRingSizes.size(); ++i) {
    if (highlightMouseClicksModel.selectedSize == TWHighlightMouseClicks::availableSizes[i])
      circularViewSize = kRingSizes[i];
  }
  if (!mouseWindow) {
    windowFrame_ = windowServer_.mainDisplayBounds();
    mouseWindow = overlayWindows_.make({.frame = windowFrame_,
                                        .creation = OverlayWindowSpec::Creation::immediate,
                                        .surface = OverlayWindowSpec::Surface::translucent,
                                        .level = kScreenSaverWindowLevel,
                                        .collectionBehaviour = CollectionBehaviour::canJoinAllSpaces});
    mouseWindow->setBackgroundColour(kClear);
    circularView.emplace();
    mouseWindow->setIgnoresMouseEvents();
    mouseWindow->orderFrontRegardless();
    displayChanges_ = windowServer_.onDisplayChange([this] {
      windowFrame_ = windowServer_.mainDisplayBounds();
      mouseWindow->setFrame(windowFrame_);
      followPointer();
    });
  }
  if (!eventHandlerObject)
    eventHandlerObject = pointerMonitor_.addGlobalMonitor(kFollowedEvents, [this] { followPointer(); });
  followPointer();
}

void HighlightController::followPointer() {
  if (!highlightMouseClicksModel.isHighlightMouseClicksEnabled) return;
  _mouseLocation = pointerMonitor_.location();
  mouseWindow->setLevel(kScreenSaverWindowLevel);
  circularView->ringColor = highlightMouseClicksModel.selectedHighlightColor;
  const Point pointer = pointerMonitor_.location();
  circularView->frame = {pointer.x - windowFrame_.x - circularViewSize / 2,
                         pointer.y - windowFrame_.y - circularViewSize / 2, circularViewSize,
                         circularViewSize};
  mouseWindow->setDrawing(circularView->drawing(), circularView->frame);
  // At every movement, so that the ring stays in front of windows that other applications raise; last, so
  // that it is never seen where it was.
  mouseWindow->orderFrontRegardless();
}

}  // namespace harbor
