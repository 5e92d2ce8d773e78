#import "platform/macos/MacColourPanes.h"

#import "platform/macos/ActionTarget.h"
#import "platform/macos/MacValues.h"

namespace harbor {
namespace {

constexpr double kMargin = 20;
constexpr double kWellWidth = 200;
constexpr double kWellHeight = 60;

NSViewController* paneController(NSView* container, NSView* well) {
  NSView* const view = [[NSView alloc] init];
  [view addSubview:container];
  pinEdges(container, view, kMargin);
  [container addSubview:well];
  pinEdges(well, container, kMargin);
  [NSLayoutConstraint activateConstraints:@[
    [well.widthAnchor constraintEqualToConstant:kWellWidth],
    [well.heightAnchor constraintEqualToConstant:kWellHeight],
  ]];
  return [[HarborViewController alloc] initWithView:view];
}

}  // namespace

MacColourPane::MacColourPane(ColourPaneEvents events)
    : viewContainerView1_([[NSView alloc] init]),
      customColorWell_([[NSColorWell alloc] init]),
      customColorChanged_([[HarborActionTarget alloc]
          initWithAction:[changed = std::move(events.colourChanged)](NSControl*) { changed(); }]),
      window_(paneController(viewContainerView1_, customColorWell_), ViewWindow::Sizing::fixed,
              std::move(events.viewDidDisappear)) {
  customColorWell_.target = customColorChanged_;
  customColorWell_.action = @selector(controlActed:);
  [customColorWell_ setAccessibilityLabel:@"Custom Color"];
}

// The shared colour panel may stay open; it must not act on a well that is gone.
MacColourPane::~MacColourPane() {
  customColorWell_.target = nil;
  [customColorWell_ deactivate];
}

void MacColourPane::setContainer(const Colour& background, double cornerRadius) {
  harbor::setContainer(viewContainerView1_, background, cornerRadius);
}

void MacColourPane::setWellColour(const Colour& colour) {
  customColorWell_.color = nsColor(colour);
}

Colour MacColourPane::wellColour() const {
  return colourOf(customColorWell_.color).value_or(Colour::black());
}

void MacColourPane::setTitle(const std::string& title) {
  window_.setTitle(title);
}

void MacColourPane::showWindow() {
  window_.showWindow();
}

void MacColourPane::orderFrontRegardless() {
  window_.orderFrontRegardless();
}

std::unique_ptr<ColourPane> MacColourPanes::make(ColourPaneEvents events) {
  return std::make_unique<MacColourPane>(std::move(events));
}

}  // namespace harbor
