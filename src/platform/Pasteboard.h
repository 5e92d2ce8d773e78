// The general pasteboard (clipboard). No call blocks on another program: what is asked for is what is known
// here and now. A platform on which contents have to be requested from the program that copied requests no
// more than somebody wants, and holds no more.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "base/Subscription.h"
#include "platform/Workspace.h"

namespace harbor {

class Pasteboard {
 public:
  // How much of each copy somebody wants to know, each level including those before it.
  enum class Wants { nothing, types, text };
  // Whether the copies that come while this application is in front are left out.
  using Refusal = std::function<bool(const std::optional<RunningApplication>& source)>;

  virtual ~Pasteboard() = default;

  // Holding the subscription keeps the wish; the highest of all that are held counts, and nothing is wanted
  // without any. What is there already is no change when it becomes known through a new wish, not even when
  // its owner answers late. What is held and no longer wanted is dropped at once.
  virtual Subscription want(Wants wants) = 0;

  // Copies that are left out are counted but not requested, as long as the subscription is held. Asked for
  // each copy when it comes; the function that was given last counts.
  virtual Subscription leaveOut(Refusal refuses) = 0;

  // A number that goes up with every change of the contents, this program's own included. A change counts
  // once its contents can be read (or are known to be unreadable), so that a change seen is a change that can
  // be recorded.
  virtual std::int64_t changeCount() const = 0;

  // Whether the contents carry formatted text that has to be reduced to its plain text. False when the types
  // are not known.
  virtual bool hasRichText() const = 0;

  // Gets the plain text of the formatted text that is there now, whatever is wanted otherwise, and calls
  // `done` with it once: before it returns where the text is known. Does not call it when there is no such
  // text, or when the contents change before it comes. A later call takes the place of an earlier one.
  virtual void readRichText(std::function<void(const std::string& plainText)> done) = 0;

  // Whether the owner has marked the contents as secret or passing (a password manager's copy). Their data is
  // then not read: hasRichText is false and string is absent.
  virtual bool isConcealed() const = 0;

  // The plain text; absent when there is none, it is not valid UTF-8 text, it is concealed, left out or
  // longer than the platform takes. A platform that requests contents has it only while text is wanted.
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
