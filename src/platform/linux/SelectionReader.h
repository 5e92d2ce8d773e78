// Reads the CLIPBOARD selection of another program step by step in the event loop: first its types, then,
// when they allow it, its plain text. Nothing waits for the owner, whatever it does: each answer has a time
// limit, the whole has one, and no more than the limit of bytes is taken. What is not wanted is not asked
// for.
#pragma once

#include <QTimer>
#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/ClipboardTypes.h"
#include "platform/linux/XcbConnection.h"

namespace harbor {

struct ClipboardContents {
  bool richText = false;
  bool concealed = false;
  std::optional<std::string> string;  // valid UTF-8 without zero bytes
};

struct SelectionLimits {
  std::size_t textBytes = 4 << 20;          // a longer text is absent
  std::chrono::milliseconds answer{2'000};  // for each step of the owner
  std::chrono::milliseconds whole{10'000};  // for everything
};

// The text of bytes that came as UTF-8; nothing when they are not valid, or hold a zero byte.
std::optional<std::string> textFromUtf8(std::string bytes);

class SelectionReader {
 public:
  // How far a reading goes, each level including those before it.
  enum class Depth {
    types,
    textOfRichText,  // the text too where the types say that it is formatted
    text,
  };
  using Settled = std::function<void(ClipboardContents)>;

  SelectionReader(XcbConnection& connection, SelectionLimits limits);
  ~SelectionReader();
  SelectionReader(const SelectionReader&) = delete;
  SelectionReader& operator=(const SelectionReader&) = delete;

  // Abandons what is under way and asks the present owner. `time` is that of the ownership. `settled` comes
  // once, from the event loop; what could not be had by then is absent.
  void read(xcb_timestamp_t time, Depth depth, Settled settled);
  // Changes how far the reading under way goes. One that has come further than that settles at once, with the
  // types alone.
  void setDepth(Depth depth);
  // Abandons what is under way; `settled` does not come.
  void cancel();

  bool isReading() const { return step_ != Step::idle; }

  // What is held of an unfinished transfer.
  std::size_t bufferedBytes() const { return bytes_.size(); }

 private:
  enum class Step { idle, types, text };
  struct NamedAtom {
    xcb_atom_t atom;
    ClipboardType type;
  };
  struct Retired {
    xcb_window_t window;
    std::chrono::steady_clock::time_point since;
  };

  void handle(const XcbConnection::Event& event);
  void ask(Step step, xcb_atom_t target);
  std::size_t byteLimit() const;
  void fetch();
  void received(std::optional<XProperty> property);
  void continueTransfer(const XProperty& first);
  void appendChunk(std::optional<XProperty> chunk);
  void finishStep(xcb_atom_t type, std::uint8_t format);
  void stepFailed();
  void finishTypes(const std::vector<std::uint32_t>& targets);
  bool wantsText() const;
  void askForNextText();
  void finishText(xcb_atom_t type, std::uint8_t format);
  void settle();
  void startTimer();
  void makeWindow();
  void retireWindow();
  void destroyRetired(bool all);

  XcbConnection& connection_;
  SelectionLimits limits_;
  Subscription events_;
  QTimer timer_;
  std::vector<NamedAtom> names_;  // of kClipboardTypeNames, in its order
  xcb_atom_t clipboard_ = XCB_ATOM_NONE;
  xcb_atom_t targets_ = XCB_ATOM_NONE;
  xcb_atom_t incr_ = XCB_ATOM_NONE;
  xcb_atom_t compoundText_ = XCB_ATOM_NONE;

  Step step_ = Step::idle;
  Depth depth_ = Depth::text;
  std::uint64_t reading_ = 0;  // the number of the read under way: answers to earlier ones are ignored
  xcb_timestamp_t time_ = XCB_CURRENT_TIME;
  std::chrono::steady_clock::time_point deadline_;
  Settled settled_;
  xcb_window_t window_ = XCB_WINDOW_NONE;
  xcb_atom_t target_ = XCB_ATOM_NONE;
  bool answered_ = false;  // the owner has answered this step's request
  bool isIncremental_ = false;
  bool isFetching_ = false;
  bool hasMore_ = false;  // a chunk came while one was being fetched
  xcb_atom_t chunkType_ = XCB_ATOM_NONE;
  std::uint8_t chunkFormat_ = 0;
  std::string bytes_;
  ClipboardContents contents_;
  std::vector<NamedAtom> textTargets_;  // still to be asked for, the next one first
  ClipboardType textType_ = ClipboardType::text;
  std::vector<Retired> retired_;
};

}  // namespace harbor
