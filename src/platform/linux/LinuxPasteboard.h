// The CLIPBOARD selection of X11 (never PRIMARY). Each change is read once, in the event loop, as far as
// somebody wants to know it, and what it gave is what the questions below are answered from. Without an X
// server the pasteboard is empty and stays so.
#pragma once

#include <QTimer>
#include <chrono>
#include <memory>

#include "platform/HeldWants.h"
#include "platform/Pasteboard.h"
#include "platform/linux/SelectionReader.h"
#include "platform/linux/XcbConnection.h"

namespace harbor {

class LinuxPasteboard : public Pasteboard {
 public:
  // Needs the Qt application. What is on the clipboard already is no change.
  explicit LinuxPasteboard(const Workspace& workspace, SelectionLimits limits = {});
  ~LinuxPasteboard() override;

  Subscription want(Wants wants) override;
  Subscription leaveOut(Refusal refuses) override;
  // Goes up when a change has been read as far as it is wanted, or given up: own writes at once.
  std::int64_t changeCount() const override;
  bool hasRichText() const override;
  void readRichText(std::function<void(const std::string& plainText)> done) override;
  bool isConcealed() const override;
  std::optional<std::string> string() const override;
  std::optional<RunningApplication> sourceApplication() const override;
  void clearContents() override;
  void setString(std::string_view text) override;

  // What is held of an unfinished transfer, in bytes.
  std::size_t bufferedBytes() const { return reader_ ? reader_->bufferedBytes() : 0; }

 private:
  enum class Counting { isChange, isNoChange };

  // The last copy, when it is left out: why, and who has it by now.
  struct LeftOut {
    std::optional<RunningApplication> source;
    bool isConcealed = false;
    std::optional<xcb_timestamp_t> ownerGone = {};  // when its owner gave it up or ended
    xcb_window_t heir = XCB_WINDOW_NONE;            // of the program that has taken it over
  };

  void handle(const XcbConnection::Event& event);
  void ownerChanged(xcb_window_t owner, xcb_timestamp_t ownedSince);
  void startReading(Counting counting);
  void readOwnProcess(Counting counting);
  void settle(ClipboardContents contents, Counting counting);
  void wantsChanged();
  std::optional<SelectionReader::Depth> wantedDepth() const;
  void dropUnwanted();
  void deliverRichText();
  void noteSource();
  bool isLeftOut() const;
  bool takesOverWhatIsLeftOut(xcb_window_t owner) const;
  bool isOwnProcess(xcb_window_t window) const;
  bool isSameClient(xcb_window_t one, xcb_window_t other) const;
  xcb_window_t ownerOf(xcb_atom_t selection) const;
  void takeLatest() const;

  const Workspace& workspace_;
  std::unique_ptr<XcbConnection> connection_;
  std::unique_ptr<SelectionReader> reader_;
  Subscription events_;
  QTimer pause_;  // holds back reading while the owner changes faster than reading makes sense
  QTimer clearing_;
  std::size_t maximumTextBytes_;
  std::uint8_t firstXFixesEvent_ = 0;
  xcb_atom_t clipboard_ = XCB_ATOM_NONE;
  xcb_atom_t clipboardManager_ = XCB_ATOM_NONE;
  xcb_atom_t activeWindow_ = XCB_ATOM_NONE;
  std::uint32_t ownWindowBase_ = 0;  // the windows that the toolkit makes in this process
  std::uint32_t ownWindowMask_ = 0;

  HeldWants held_{[this] { wantsChanged(); }};
  Wants wants_ = Wants::nothing;
  std::shared_ptr<Refusal> refuses_;

  std::int64_t changeCount_ = 1;
  xcb_window_t owner_ = XCB_WINDOW_NONE;
  ClipboardContents contents_;
  std::optional<SelectionReader::Depth> readDepth_;  // how far the present contents have been read
  Counting readingCounting_ = Counting::isNoChange;  // of the reading under way
  std::optional<LeftOut> leftOut_;
  std::function<void(const std::string&)> richTextDone_;
  QTimer delivery_;  // of the text that richTextDone_ waits for
  std::optional<RunningApplication> source_;
  xcb_timestamp_t ownedSince_ = XCB_CURRENT_TIME;
  xcb_timestamp_t serverTime_ = XCB_CURRENT_TIME;  // of the newest change
  std::chrono::steady_clock::time_point lastRead_;
};

}  // namespace harbor
