// The general pasteboard (clipboard). No call blocks on another program: what is asked for is what is known
// here and now.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Workspace.h"

namespace harbor {

class Pasteboard {
 public:
  virtual ~Pasteboard() = default;

  // A number that goes up with every change of the contents, this program's own included. A change counts
  // once its contents can be read (or are known to be unreadable), so that a change seen is a change that can
  // be recorded.
  virtual std::int64_t changeCount() const = 0;

  // Whether the contents carry formatted text that has to be reduced to its plain text.
  virtual bool hasRichText() const = 0;

  // Whether the owner has marked the contents as secret or passing (a password manager's copy). Their data is
  // then not read: hasRichText is false and string is absent.
  virtual bool isConcealed() const = 0;

  // The plain text; absent when there is none, it is not valid UTF-8 text, it is concealed or longer than the
  // platform takes.
  virtual std::optional<std::string> string() const = 0;

  // The application that was frontmost when the contents came; where a platform cannot tell, the frontmost
  // one now.
  virtual std::optional<RunningApplication> sourceApplication() const = 0;

  // The two writers' own change is counted once, and before they return.
  virtual void clearContents() = 0;
  // Makes the text the only contents, without a moment in which there are none.
  virtual void setString(std::string_view text) = 0;
};

}  // namespace harbor
