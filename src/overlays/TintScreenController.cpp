#include "overlays/TintScreenController.h"

#include <array>

#include "overlays/OverlaySection.h"
#include "overlays/TWColor.h"
#include "settings/SettingsKeys.h"

namespace harbor {
namespace {

struct Intensity {
  const char* title;
  double alpha;
};

// In menu order. Half the percentage on purpose: even the strongest veil stays less than half opaque.
constexpr std::array<Intensity, 9> kIntensities{{
    {"10% Intensity", 0.05},
    {"20% Intensity", 0.1},
    {"30% Intensity", 0.15},
    {"40% Intensity", 0.2},
    {"50% Intensity", 0.25},
    {"60% Intensity", 0.3},
    {"70% Intensity", 0.35},
    {"80% Intensity", 0.4},
    {"90% Intensity", 0.45},
}};

constexpr double kUnknownIntensityAlpha = 0.3;
constexpr Colour kUnknownColour{0.0, 0.0, 0.0, 0.3};

}  // namespace

TintScreenController::TintScreenController(TWTintScreen& model, SettingsStore& settings,
                                           VeilConflict& conflict, WindowServer& windowServer,
                                           OverlayWindows& overlayWindows,
                                           const PaneSurroundings& paneSurroundings)
    : tintScreenModel(model),
      settings_(settings),
      conflict_(conflict),
      windowServer_(windowServer),
      overlayWindows_(overlayWindows),
      paneSurroundings_(paneSurroundings) {
  conflict_.setSwitchOff(VeilConflict::Veil::tintScreen, [this] { switchOff(); });
}

void TintScreenController::appendSection(Menu& menu, MenuBuild) {
  Menu submenu;
  submenu.push_back(menuItem(
      "Enable", [this](const MenuItem& sender) { tintScreenEnabled(sender); },
      stateFor(tintScreenModel.isTintScreenEnabled)));
  submenu.push_back(MenuItem::separator());
  appendOptions(submenu, kVeilColorTitles, tintScreenModel.selectedTintScreenColor,
                [this](const MenuItem& sender) { tintColorClicked(sender); });
  submenu.push_back(MenuItem::separator());
  for (const Intensity& intensity : kIntensities) {
    submenu.push_back(menuItem(
        intensity.title, [this](const MenuItem& sender) { intensityClicked(sender); },
        stateFor(tintScreenModel.selectedIntensity == intensity.title)));
  }
  submenu.push_back(MenuItem::separator());
  submenu.push_back(
      menuItem("Preferences", [this](const MenuItem& sender) { displayTintScreenPreferences(sender); }));
  appendOverlaySection(menu, "Tint Screen", std::move(submenu), tintScreenModel.isTintScreenEnabled,
                       overlayWindows_.unavailableReason());

  applyTintScreen();
}

void TintScreenController::tintScreenEnabled(const MenuItem& sender) {
  if (sender.state == MenuItem::State::on) {
    switchOff();
    return;
  }
  if (!conflict_.resolveBefore(VeilConflict::Veil::tintScreen)) return;
  tintScreenModel.isTintScreenEnabled = true;
  settings_.setBool(settings_keys::tintScreenEnabled, true);
  applyTintScreen();
}

void TintScreenController::switchOff() {
  tintScreenModel.isTintScreenEnabled = false;
  settings_.setBool(settings_keys::tintScreenEnabled, false);
  if (tintWindow) tintWindow->orderOut();
}

void TintScreenController::tintColorClicked(const MenuItem& sender) {
  tintScreenModel.selectedTintScreenColor = sender.title;
  settings_.setString(settings_keys::selectedTintScreenColor, sender.title);
  applyTintScreen();
}

void TintScreenController::intensityClicked(const MenuItem& sender) {
  tintScreenModel.selectedIntensity = sender.title;
  settings_.setString(settings_keys::selectedIntensity, sender.title);
  applyTintScreen();
}

void TintScreenController::displayTintScreenPreferences(const MenuItem&) {
  openOrBringForward(tintScreenPreferences, paneSurroundings_, tintScreenModel,
                     [this] { applyTintScreen(); });
}

void TintScreenController::applyTintScreen() {
  if (!tintScreenModel.isTintScreenEnabled) return;
  if (!tintWindow) {
    tintWindow = overlayWindows_.make(
        {.frame = windowServer_.mainDisplayBounds(),
         .creation = OverlayWindowSpec::Creation::immediate,
         .surface = OverlayWindowSpec::Surface::translucent,
         .level = kScreenSaverWindowLevel,
         .collectionBehaviour = CollectionBehaviour::canJoinAllSpaces | CollectionBehaviour::stationary});
    displayChanges_ =
        windowServer_.onDisplayChange([this] { tintWindow->setFrame(windowServer_.mainDisplayBounds()); });
  }
  tintWindow->setBackgroundColour(veilColour());
  tintWindow->setIgnoresMouseEvents();
  tintWindow->orderFrontRegardless();
}

Colour TintScreenController::veilColour() const {
  const std::string& title = tintScreenModel.selectedTintScreenColor;
  if (title == kCustomColorTitle)
    return tintScreenModel.selectedCustomTintScreenColor.withAlpha(intensityAlpha());
  return TWColor::hasTitle(title) ? TWColor::colorForTitle(title).withAlpha(intensityAlpha())
                                  : kUnknownColour;
}

double TintScreenController::intensityAlpha() const {
  for (const Intensity& intensity : kIntensities) {
    if (tintScreenModel.selectedIntensity == intensity.title) return intensity.alpha;
  }
  return kUnknownIntensityAlpha;
}

}  // namespace harbor
