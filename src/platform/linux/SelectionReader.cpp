#include "platform/linux/SelectionReader.h"

#include <QByteArrayView>
#include <algorithm>
#include <cstring>
#include <utility>

namespace harbor {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t kTypesBytes = 256 << 10;  // 65,536 types
// An owner may still answer a question that was given up. Its answer must find the window, since a program
// that does not expect an X error dies of one.
constexpr auto kRetirement = 60s;
constexpr std::size_t kMaximumRetired = 16;

// Toolkits of old send the byte that ends a text in memory along with it.
std::string withoutTerminator(std::string bytes) {
  if (bytes.ends_with('\0')) bytes.pop_back();
  return bytes;
}

std::optional<std::string> textFromLatin1(const std::string& bytes) {
  std::string text;
  text.reserve(bytes.size());
  for (const char byte : bytes) {
    const auto code = static_cast<unsigned char>(byte);
    if (code == 0) return std::nullopt;
    if (code < 0x80) {
      text += byte;
    } else {
      text += static_cast<char>(0xC0 | (code >> 6));
      text += static_cast<char>(0x80 | (code & 0x3F));
    }
  }
  return text;
}

}  // namespace

std::optional<std::string> textFromUtf8(std::string bytes) {
  const bool isText = bytes.find('\0') == std::string::npos &&
                      QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())).isValidUtf8();
  if (!isText) return std::nullopt;
  return bytes;
}

SelectionReader::SelectionReader(XcbConnection& connection, SelectionLimits limits)
    : connection_(connection), limits_(limits) {
  std::vector<std::string_view> names = {"CLIPBOARD", "TARGETS", "INCR", "COMPOUND_TEXT"};
  for (const ClipboardTypeName& name : kClipboardTypeNames)
    names.push_back(name.name);
  connection_.intern(names);
  for (const ClipboardTypeName& name : kClipboardTypeNames)
    names_.push_back({connection_.atom(name.name), name.type});
  clipboard_ = connection_.atom("CLIPBOARD");
  targets_ = connection_.atom("TARGETS");
  incr_ = connection_.atom("INCR");
  compoundText_ = connection_.atom("COMPOUND_TEXT");

  timer_.setSingleShot(true);
  QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { settle(); });
  events_ = connection_.onEvent([this](const XcbConnection::Event& event) { handle(event); });
}

SelectionReader::~SelectionReader() {
  cancel();
  destroyRetired(true);
}

void SelectionReader::read(xcb_timestamp_t time, Depth depth, Settled settled) {
  cancel();
  time_ = time;
  depth_ = depth;
  settled_ = std::move(settled);
  deadline_ = std::chrono::steady_clock::now() + limits_.whole;
  makeWindow();
  ask(Step::types, targets_);
}

void SelectionReader::setDepth(Depth depth) {
  depth_ = depth;
  if (step_ == Step::text && !wantsText()) settle();
}

bool SelectionReader::wantsText() const {
  return depth_ == Depth::text || (depth_ == Depth::textOfRichText && contents_.richText);
}

void SelectionReader::cancel() {
  ++reading_;
  step_ = Step::idle;
  timer_.stop();
  settled_ = nullptr;
  contents_ = {};
  textTargets_.clear();
  bytes_ = {};
  retireWindow();
}

void SelectionReader::makeWindow() {
  window_ = xcb_generate_id(connection_.get());
  const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_create_window(connection_.get(), 0, window_, connection_.root(), -10, -10, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &mask);
}

void SelectionReader::retireWindow() {
  if (window_ != XCB_WINDOW_NONE) {
    const std::uint32_t mask = XCB_EVENT_MASK_NO_EVENT;
    xcb_change_window_attributes(connection_.get(), window_, XCB_CW_EVENT_MASK, &mask);
    retired_.push_back({window_, std::chrono::steady_clock::now()});
    window_ = XCB_WINDOW_NONE;
  }
  destroyRetired(false);
}

void SelectionReader::destroyRetired(bool all) {
  const auto now = std::chrono::steady_clock::now();
  while (!retired_.empty() &&
         (all || retired_.size() > kMaximumRetired || now - retired_.front().since > kRetirement)) {
    xcb_destroy_window(connection_.get(), retired_.front().window);
    retired_.erase(retired_.begin());
  }
  xcb_flush(connection_.get());
}

void SelectionReader::startTimer() {
  const auto left =
      std::chrono::duration_cast<std::chrono::milliseconds>(deadline_ - std::chrono::steady_clock::now());
  timer_.start(std::clamp(left, 0ms, limits_.answer));
}

void SelectionReader::ask(Step step, xcb_atom_t target) {
  step_ = step;
  target_ = target;
  answered_ = isIncremental_ = isFetching_ = hasMore_ = false;
  bytes_.clear();
  startTimer();
  xcb_convert_selection(connection_.get(), window_, clipboard_, target, target, time_);
  xcb_flush(connection_.get());
}

void SelectionReader::handle(const XcbConnection::Event& event) {
  if (step_ == Step::idle) return;
  const int type = event.response_type & 0x7f;
  if (type == XCB_SELECTION_NOTIFY) {
    const auto& notify = reinterpret_cast<const xcb_selection_notify_event_t&>(event);
    if (notify.requestor != window_ || notify.selection != clipboard_ || notify.target != target_ ||
        answered_)
      return;
    answered_ = true;
    if (notify.property == target_) {
      fetch();
    } else {
      stepFailed();
    }
  } else if (type == XCB_PROPERTY_NOTIFY) {
    const auto& notify = reinterpret_cast<const xcb_property_notify_event_t&>(event);
    if (notify.window != window_ || notify.atom != target_ || notify.state != XCB_PROPERTY_NEW_VALUE ||
        !isIncremental_)
      return;
    if (isFetching_) {
      hasMore_ = true;
    } else {
      fetch();
    }
  }
}

// A text may be followed by a terminator.
std::size_t SelectionReader::byteLimit() const {
  return step_ == Step::types ? kTypesBytes : limits_.textBytes + 1;
}

void SelectionReader::fetch() {
  isFetching_ = true;
  const std::size_t limit = byteLimit();
  const std::size_t wanted = (limit - std::min(limit, bytes_.size())) / 4 + 1;
  // A chunk is deleted as it is read, which asks for the next one. The first answer is not: its deletion
  // would start a transfer that may already be known to be too long.
  const auto cookie = xcb_get_property(connection_.get(), isIncremental_ ? 1 : 0, window_, target_,
                                       XCB_ATOM_ANY, 0, static_cast<std::uint32_t>(wanted));
  connection_.awaitReply(cookie.sequence, [this, reading = reading_, target = target_](void* reply) {
    if (reading != reading_ || target != target_ || step_ == Step::idle) return;
    isFetching_ = false;
    received(xPropertyOf(static_cast<const xcb_get_property_reply_t*>(reply)));
  });
}

void SelectionReader::received(std::optional<XProperty> property) {
  if (isIncremental_) {
    appendChunk(std::move(property));
  } else if (!property) {
    stepFailed();
  } else if (property->type == incr_) {
    continueTransfer(*property);
  } else if (property->bytesAfter > 0) {
    settle();
  } else {
    bytes_ = std::move(property->bytes);
    xcb_delete_property(connection_.get(), window_, target_);
    finishStep(property->type, property->format);
  }
}

void SelectionReader::continueTransfer(const XProperty& first) {
  const auto announced = first.words();
  if (!announced.empty() && announced.front() > byteLimit()) {
    settle();
    return;
  }
  isIncremental_ = true;
  chunkType_ = XCB_ATOM_NONE;
  startTimer();
  xcb_delete_property(connection_.get(), window_, target_);
  xcb_flush(connection_.get());
}

void SelectionReader::appendChunk(std::optional<XProperty> chunk) {
  const bool isAnotherDue = std::exchange(hasMore_, false);
  if (!chunk) {  // what the notice was about has been read with the chunk before
    if (isAnotherDue) fetch();
    return;
  }
  if (chunk->bytes.empty() && chunk->bytesAfter == 0) {
    finishStep(chunkType_ == XCB_ATOM_NONE ? chunk->type : chunkType_,
               chunkType_ == XCB_ATOM_NONE ? chunk->format : chunkFormat_);
    return;
  }
  chunkType_ = chunk->type;
  chunkFormat_ = chunk->format;
  bytes_ += chunk->bytes;
  if (bytes_.size() > byteLimit() || chunk->bytesAfter > 0) {
    settle();
    return;
  }
  startTimer();
  if (isAnotherDue) fetch();
}

void SelectionReader::finishStep(xcb_atom_t type, std::uint8_t format) {
  if (step_ == Step::types) {
    finishTypes(XProperty{type, format, std::exchange(bytes_, {}), 0}.words());
  } else {
    finishText(type, format);
  }
}

void SelectionReader::stepFailed() {
  if (step_ == Step::types) {
    // Programs older than the convention of types still give their text.
    textTargets_ = {{connection_.atom("UTF8_STRING"), ClipboardType::text},
                    {connection_.atom("STRING"), ClipboardType::latin1Text}};
  }
  askForNextText();
}

void SelectionReader::finishTypes(const std::vector<std::uint32_t>& targets) {
  std::vector<std::uint32_t> sorted = targets;
  std::sort(sorted.begin(), sorted.end());
  ClipboardTypes types;
  for (const NamedAtom& name : names_) {
    if (!std::binary_search(sorted.begin(), sorted.end(), name.atom)) continue;
    types.add(name.type);
    if (name.type >= ClipboardType::text) textTargets_.push_back(name);
  }
  contents_.concealed = types.isConcealed();
  contents_.richText = types.hasRichText();
  if (contents_.concealed) textTargets_.clear();
  askForNextText();
}

void SelectionReader::askForNextText() {
  if (textTargets_.empty() || !wantsText()) {
    settle();
    return;
  }
  const NamedAtom next = textTargets_.front();
  textTargets_.erase(textTargets_.begin());
  textType_ = next.type;
  ask(Step::text, next.atom);
}

void SelectionReader::finishText(xcb_atom_t type, std::uint8_t format) {
  const bool isKnown = format == 8 && type != compoundText_;
  if (!isKnown) {
    askForNextText();
    return;
  }
  const bool isLatin1 = type == XCB_ATOM_STRING && textType_ != ClipboardType::text;
  std::string bytes = withoutTerminator(std::exchange(bytes_, {}));
  auto text = isLatin1 ? textFromLatin1(bytes) : textFromUtf8(std::move(bytes));
  if (!text) {
    askForNextText();
    return;
  }
  if (text->size() <= limits_.textBytes) contents_.string = std::move(text);
  settle();
}

void SelectionReader::settle() {
  const Settled settled = std::move(settled_);
  ClipboardContents contents = std::move(contents_);
  cancel();
  if (settled) settled(std::move(contents));
}

}  // namespace harbor
