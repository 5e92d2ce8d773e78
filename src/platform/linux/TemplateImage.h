// Template images: one-colour drawings that take the colour of what they lie on.
#pragma once

#include <QIcon>
#include <QPainterPath>
#include <string_view>

#include "platform/linux/PanelTone.h"

namespace harbor {

// The outline of the image of that name among the program's resources, in a square of 16 by 16; empty when
// there is none. The drawing is an SVG file with one path element that uses absolute M, L, C and Z only.
QPainterPath templateOutline(std::string_view name);

// The image, dark on a light panel and light on a dark one, and light with a dark rim where the panel's tone
// is not known. It is drawn anew for each size, its edges on whole pixels. Where the icon theme has been
// given the two files that the installation puts there, the icon carries their name, so that a panel can draw
// it at any size itself.
QIcon templateIcon(std::string_view name, PanelTone tone);

}  // namespace harbor
