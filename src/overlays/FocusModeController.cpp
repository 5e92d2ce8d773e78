#include "overlays/FocusModeController.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <vector>

#include "overlays/OverlaySection.h"
#include "overlays/TWColor.h"
#include "settings/SettingsKeys.h"

namespace harbor {
namespace {

constexpr std::chrono::milliseconds kTrackingInterval{500};

struct Opacity {
  const char* title;
  double alpha;
};

// In menu order.
constexpr std::array<Opacity, 9> kOpacities{{
    {"10% Opacity", 0.1},
    {"20% Opacity", 0.2},
    {"30% Opacity", 0.3},
    {"40% Opacity", 0.4},
    {"50% Opacity", 0.5},
    {"60% Opacity", 0.6},
    {"70% Opacity", 0.7},
    {"80% Opacity", 0.8},
    {"90% Opacity", 0.9},
}};

constexpr auto kTrackedWindows = WindowListOptions::onScreenOnly | WindowListOptions::excludeDesktopElements;

const WindowInfo* find(const std::vector<WindowInfo>& windows, WindowNumber number) {
  const auto found = std::find_if(windows.begin(), windows.end(),
                                  [&](const WindowInfo& window) { return window.number == number; });
  return found == windows.end() ? nullptr : &*found;
}

}  // namespace

FocusModeController::FocusModeController(TWFocusMode& model, SettingsStore& settings, VeilConflict& conflict,
                                         RunLoop& runLoop, const Workspace& workspace,
                                         WindowServer& windowServer, OverlayWindows& overlayWindows,
                                         const PaneSurroundings& paneSurroundings)
    : focusModeModel(model),
      settings_(settings),
      conflict_(conflict),
      runLoop_(runLoop),
      workspace_(workspace),
      windowServer_(windowServer),
      overlayWindows_(overlayWindows),
      paneSurroundings_(paneSurroundings) {
  conflict_.setSwitchOff(VeilConflict::Veil::focusMode, [this] {
    // The timer goes on idly; the next build of the menu stops it.
    focusModeModel.isFocusModeEnabled = false;
    settings_.setBool(settings_keys::focusModeEnabled, false);
    hideVeil();
  });
}

void FocusModeController::appendItems(Menu& menu) {
  Menu submenu;
  submenu.push_back(menuItem(
      "Enable", [this](const MenuItem& sender) { focusModeEnabled(sender); },
      stateFor(focusModeModel.isFocusModeEnabled)));
  submenu.push_back(MenuItem::separator());
  appendOptions(submenu, kVeilColorTitles, focusModeModel.selectedDimColor,
                [this](const MenuItem& sender) { focusModeClicked(sender); });
  submenu.push_back(MenuItem::separator());
  for (const Opacity& opacity : kOpacities) {
    submenu.push_back(menuItem(
        opacity.title, [this](const MenuItem& sender) { opacityClicked(sender); },
        stateFor(focusModeModel.selectedOpacity == opacity.title)));
  }
  submenu.push_back(MenuItem::separator());
  submenu.push_back(
      menuItem("Preferences", [this](const MenuItem& sender) { displayFocusModePreferences(sender); }));
  appendOverlaySection(menu, "Focus Mode", std::move(submenu), focusModeModel.isFocusModeEnabled,
                       overlayWindows_.unavailableReason());

  applyFocusMode();
}

void FocusModeController::focusModeEnabled(const MenuItem& sender) {
  if (sender.state == MenuItem::State::on) {
    switchOff();
    return;
  }
  if (!conflict_.resolveBefore(VeilConflict::Veil::focusMode)) return;
  lastWindowNumber = kNoWindow;
  focusModeModel.isFocusModeEnabled = true;
  settings_.setBool(settings_keys::focusModeEnabled, true);
  startTimer();
  applyFocusMode();
}

void FocusModeController::focusModeClicked(const MenuItem& sender) {
  focusModeModel.selectedDimColor = sender.title;
  settings_.setString(settings_keys::selectedDimColor, sender.title);
  applyFocusMode();
}

void FocusModeController::opacityClicked(const MenuItem& sender) {
  focusModeModel.selectedOpacity = sender.title;
  settings_.setString(settings_keys::selectedOpacity, sender.title);
  applyFocusMode();
}

void FocusModeController::displayFocusModePreferences(const MenuItem&) {
  openOrBringForward(focusModePreferences, paneSurroundings_, focusModeModel, [this] { applyFocusMode(); });
}

void FocusModeController::focusMode(const MenuItem&) {
  makeFocusWindow(CollectionBehaviour::standard);
  focusWindow->setBackgroundColour(Colour::black().withAlpha(alpha));
  focusWindow->setIgnoresMouseEvents();
  trackFrontWindow();
}

void FocusModeController::applyFocusMode() {
  if (!focusModeModel.isFocusModeEnabled) return;
  if (!focusWindow) makeFocusWindow(CollectionBehaviour::moveToActiveSpace | CollectionBehaviour::transient);
  const Colour provisional = Colour::black().withAlpha(alpha);
  updateAlphaFromOpacity();
  focusWindow->setBackgroundColour(veilColour(provisional));
  focusWindow->setIgnoresMouseEvents();
  trackFrontWindow();
}

Colour FocusModeController::veilColour(const Colour& provisional) const {
  const std::string& title = focusModeModel.selectedDimColor;
  if (title == kCustomColorTitle) return focusModeModel.selectedCustomDimColor.withAlpha(alpha);
  return TWColor::hasTitle(title) ? TWColor::colorForTitle(title).withAlpha(alpha) : provisional;
}

void FocusModeController::updateAlphaFromOpacity() {
  for (const Opacity& opacity : kOpacities) {
    if (focusModeModel.selectedOpacity == opacity.title) alpha = opacity.alpha;
  }
}

void FocusModeController::trackFrontWindow() {
  if (!focusModeModel.isFocusModeEnabled) return;
  const WindowNumber front = frontmostWindowNumber();
  if (front == kNoWindow || isFrontWindowCoveringScreen(front)) {
    hideVeil();
    lastWindowNumber = front;
    return;
  }
  // A titled window is re-asserted at every tick; an untitled one only when the veil is not yet below it,
  // which is also the case after the same window left the full screen.
  if (front == lastWindowNumber && isVeilInPlace_ && nameOfWindow(front).empty()) return;
  if (focusWindow) {
    focusWindow->orderBelow(front);
    isVeilInPlace_ = true;
  }
  lastWindowNumber = front;
}

WindowNumber FocusModeController::frontmostWindowNumber() const {
  WindowNumber front = kNoWindow;
  const WindowNumber inUse = windowServer_.windowInUse();
  for (const WindowInfo& window : windowServer_.windowList(kTrackedWindows)) {
    if (window.layer != kNormalWindowLevel || !window.ownerPid) continue;
    const auto application = workspace_.runningApplication(*window.ownerPid);
    if (!application || application->activationPolicy != ActivationPolicy::regular || !window.number)
      continue;
    if (inUse == kNoWindow || window.number == inUse) return *window.number;
    if (front == kNoWindow) front = *window.number;
  }
  return front;
}

std::int32_t FocusModeController::ownerPIDOfWindow(WindowNumber number) const {
  const auto windows = windowServer_.windowList(kTrackedWindows);
  const WindowInfo* window = find(windows, number);
  return window ? window->ownerPid.value_or(0) : 0;
}

std::string FocusModeController::nameOfWindow(WindowNumber number) const {
  const auto windows = windowServer_.windowList(kTrackedWindows);
  const WindowInfo* window = find(windows, number);
  return window ? window->name.value_or("") : "";
}

bool FocusModeController::isFrontWindowCoveringScreen(WindowNumber number) const {
  const Rect screen = windowServer_.mainScreenFrame();
  const double left = screen.x + 1;
  const double right = screen.x + screen.width - 1;
  const double top = screen.y + 1;
  const double bottom = screen.y + screen.height - 1;
  const std::int32_t frontOwner = ownerPIDOfWindow(number);
  for (const Point corner : {Point{left, top}, {right, top}, {left, bottom}, {right, bottom}}) {
    if (ownerPIDOfWindow(windowServer_.windowNumberAtPoint(corner)) != frontOwner) return false;
  }
  return nameOfWindow(number).empty();
}

void FocusModeController::startTimer() {
  if (focusTimer) return;
  focusTimer = runLoop_.repeat(kTrackingInterval, [this] { trackFrontWindow(); });
  // Where the platform can tell, the veil follows at once; the timer is then the safety net.
  frontWindowChanges_ = windowServer_.onFrontWindowChange([this] { trackFrontWindow(); });
}

void FocusModeController::stopTimer() {
  focusTimer.reset();
  frontWindowChanges_.reset();
}

void FocusModeController::makeFocusWindow(CollectionBehaviour behaviour) {
  focusWindow = overlayWindows_.make({.frame = windowServer_.mainDisplayBounds(),
                                      .creation = OverlayWindowSpec::Creation::deferred,
                                      .surface = OverlayWindowSpec::Surface::translucent,
                                      .level = kNormalWindowLevel,
                                      .collectionBehaviour = behaviour});
  isVeilInPlace_ = false;
  focusWindow->onDisplaced([this] {
    switchOff();
    overlayWindows_.notify("Focus Mode was switched off",
                           "This desktop does not keep the veil below the window in use.");
  });
  displayChanges_ = windowServer_.onDisplayChange([this] {
    focusWindow->setFrame(windowServer_.mainDisplayBounds());
    trackFrontWindow();
  });
}

void FocusModeController::switchOff() {
  focusModeModel.isFocusModeEnabled = false;
  settings_.setBool(settings_keys::focusModeEnabled, false);
  hideVeil();
  stopTimer();
  lastWindowNumber = kNoWindow;
}

void FocusModeController::hideVeil() {
  if (focusWindow) focusWindow->orderOut();
  isVeilInPlace_ = false;
}

}  // namespace harbor
