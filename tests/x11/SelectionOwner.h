// Another program that owns the clipboard, with its own connection to the X server, as well or as badly
// behaved as a test asks.
#pragma once

#include <QTimer>
#include <chrono>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/linux/XcbConnection.h"

namespace harbor {

class SelectionOwner {
 public:
  struct Answer {
    std::string type;  // of the data, where it is not the target itself
    std::string bytes;
  };

  explicit SelectionOwner(std::string selection = "CLIPBOARD");

  // Takes the selection.
  void own();
  // Gives it up and stays.
  void disown();
  // Ends the connection, as a program that is killed.
  void die();
  bool isOwner() const;
  // Owns another selection as well, as a clipboard manager does with CLIPBOARD_MANAGER.
  void ownAlso(const std::string& selection);
  // Has the window manager, which there is none of, name the program's window as the active one.
  void activate();

  SelectionOwner& offer(const std::string& target, std::string bytes, std::string type = {}) {
    answers[target] = {std::move(type), std::move(bytes)};
    return *this;
  }

  std::map<std::string, Answer> answers;
  std::vector<std::string> bareTargets;  // named among the targets and never given
  bool refusesTargets = false;
  bool isSilent = false;       // answers nothing at all
  std::string silentAbout;     // a target that gets no answer
  bool isIncremental = false;  // the text goes in chunks
  std::size_t chunkBytes = 1000;
  std::size_t incrementalBytes = 0;  // to send instead of the answer's own bytes
  std::uint32_t announcedBytes = 0;
  std::chrono::milliseconds chunkDelay{0};
  int diesAfterChunks = -1;

  std::vector<std::string> asked;  // every target that was asked for, in order
  std::size_t sentBytes = 0;

 private:
  void handle(const XcbConnection::Event& event);
  void answer(const xcb_selection_request_event_t& request);
  void sendChunk();

  std::unique_ptr<XcbConnection> connection_;
  Subscription events_;
  xcb_window_t window_ = XCB_WINDOW_NONE;
  xcb_atom_t selection_ = XCB_ATOM_NONE;
  QTimer chunkTimer_;
  xcb_window_t requestor_ = XCB_WINDOW_NONE;
  xcb_atom_t property_ = XCB_ATOM_NONE;
  xcb_atom_t chunkType_ = XCB_ATOM_NONE;
  std::size_t remaining_ = 0;
  std::string source_;
  int chunks_ = 0;
  bool isDying_ = false;
};

}  // namespace harbor
