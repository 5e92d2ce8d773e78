// The one panel that previews a file, whichever window asks.
#pragma once

#include "base/FileUrl.h"

namespace harbor {

class PreviewPanel {
 public:
  virtual ~PreviewPanel() = default;

  // Shows the file in the panel and makes the panel the key window. It never executes or renders active
  // content, and neither a huge nor a broken file keeps the program from going on.
  virtual void preview(const FileUrl& item) = 0;
};

}  // namespace harbor
