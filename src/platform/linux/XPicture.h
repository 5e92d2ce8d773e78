// A picture as the Linux platform keeps it: a pixmap in the X server, or one colour.
#pragma once

#include <memory>
#include <variant>

#include "base/Colour.h"
#include "platform/WindowServer.h"
#include "platform/linux/ServerPixmap.h"

namespace harbor {

class XPicture : public Picture {
 public:
  explicit XPicture(std::unique_ptr<ServerPixmap> pixmap) : contents(std::move(pixmap)) {}
  explicit XPicture(const Colour& colour) : contents(colour) {}

  const std::variant<std::unique_ptr<ServerPixmap>, Colour> contents;
};

}  // namespace harbor
