#include "overlays/VeilViewController.h"

#include "overlays/TWColor.h"
#include "settings/ArchivedColour.h"

namespace harbor {
namespace {

constexpr Colour kContainerColour{0.0, 0.0, 0.0, 0.05};
constexpr double kContainerCornerRadius = 5.0;

}  // namespace

VeilViewController::VeilViewController(const PaneSurroundings& surroundings, Binding binding,
                                       std::function<void()> applyVeil, std::function<void()> didDisappear)
    : settings_(surroundings.settings),
      coder_(surroundings.coder),
      openWindows_(surroundings.openWindows),
      binding_(binding),
      applyVeil_(std::move(applyVeil)),
      didDisappear_(std::move(didDisappear)),
      pane_(surroundings.panes.make({[this] { customColorChanged(); }, [this] { viewDidDisappear(); }})) {
  if (pane_) viewDidLoad();
}

void VeilViewController::viewDidLoad() {
  pane_->setContainer(kContainerColour, kContainerCornerRadius);
  pane_->setWellColour(binding_.colourTitle == kCustomColorTitle
                           ? binding_.customColour
                           : TWColor::colorForTitle(binding_.colourTitle));
  openWindow_ = openWindows_.open();
}

void VeilViewController::showWindow() {
  pane_->setTitle(binding_.windowTitle);
  pane_->showWindow();
}

void VeilViewController::customColorChanged() {
  binding_.colourTitle = kCustomColorTitle;
  settings_.setString(binding_.colourTitleKey, kCustomColorTitle);
  binding_.customColour = pane_->wellColour();
  setArchivedColour(settings_, coder_, binding_.customColourKey, binding_.customColour);
  applyVeil_();
}

void VeilViewController::viewDidDisappear() {
  // Held here, since the call may destroy this object.
  const auto didDisappear = std::move(didDisappear_);
  didDisappear();
}

}  // namespace harbor
