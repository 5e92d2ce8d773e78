#include "platform/linux/LinuxPasteboard.h"

#include <xcb/xfixes.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <utility>

namespace harbor {
namespace {

using namespace std::chrono_literals;

// Owners that follow each other faster than this are not all read: the last one is.
constexpr auto kPause = 20ms;
// Who takes the clipboard so soon after its owner has gone, restores what was there. In the server's
// milliseconds.
constexpr xcb_timestamp_t kRestoring = 1'000;

// Tells what this program has written from what one of its own text fields has copied.
class WrittenText : public QMimeData {
 public:
  explicit WrittenText(std::string_view text) {
    setText(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
  }
};

ClipboardContents contentsOf(const QMimeData& data, SelectionReader::Depth depth,
                             std::size_t maximumTextBytes) {
  using Depth = SelectionReader::Depth;
  ClipboardTypes types;
  const QStringList formats = data.formats();
  for (const ClipboardTypeName& name : kClipboardTypeNames) {
    if (formats.contains(QLatin1String(name.name.data(), static_cast<qsizetype>(name.name.size()))))
      types.add(name.type);
  }
  ClipboardContents contents{types.hasRichText(), types.isConcealed(), std::nullopt};
  const bool wantsText = depth == Depth::text || (depth == Depth::textOfRichText && contents.richText);
  if (wantsText && !contents.concealed && data.hasText()) {
    contents.string = textFromUtf8(data.text().toStdString());
    if (contents.string && contents.string->size() > maximumTextBytes) contents.string.reset();
  }
  return contents;
}

}  // namespace

LinuxPasteboard::LinuxPasteboard(const Workspace& workspace, SelectionLimits limits)
    : workspace_(workspace), maximumTextBytes_(limits.textBytes) {
  const auto* application = qobject_cast<QGuiApplication*>(QCoreApplication::instance());
  const auto* x11 = application ? application->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
  if (!x11) return;
  connection_ = XcbConnection::open();
  if (!connection_) return;
  const xcb_query_extension_reply_t* xfixes = xcb_get_extension_data(connection_->get(), &xcb_xfixes_id);
  if (!xfixes || !xfixes->present) {
    connection_.reset();
    return;
  }
  const auto version = xcb_xfixes_query_version(connection_->get(), 1, 0);
  const XcbOwned<xcb_xfixes_query_version_reply_t> answer(
      xcb_xfixes_query_version_reply(connection_->get(), version, nullptr));
  firstXFixesEvent_ = xfixes->first_event;
  connection_->intern({"CLIPBOARD", "CLIPBOARD_MANAGER", "_NET_ACTIVE_WINDOW"});
  clipboard_ = connection_->atom("CLIPBOARD");
  clipboardManager_ = connection_->atom("CLIPBOARD_MANAGER");
  activeWindow_ = connection_->atom("_NET_ACTIVE_WINDOW");
  const xcb_setup_t* setup = xcb_get_setup(x11->connection());
  ownWindowBase_ = setup->resource_id_base;
  ownWindowMask_ = setup->resource_id_mask;

  reader_ = std::make_unique<SelectionReader>(*connection_, limits);
  events_ = connection_->onEvent([this](const XcbConnection::Event& event) { handle(event); });
  pause_.setSingleShot(true);
  QObject::connect(&pause_, &QTimer::timeout, &pause_, [this] { startReading(Counting::isChange); });
  delivery_.setSingleShot(true);
  QObject::connect(&delivery_, &QTimer::timeout, &delivery_, [this] { deliverRichText(); });
  clearing_.setSingleShot(true);
  QObject::connect(&clearing_, &QTimer::timeout, &clearing_, [this] {
    takeLatest();
    if (owner_ == XCB_WINDOW_NONE) QGuiApplication::clipboard()->clear();
  });

  xcb_xfixes_select_selection_input(connection_->get(), connection_->root(), clipboard_,
                                    XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                        XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                        XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
  owner_ = ownerOf(clipboard_);
  if (owner_ != XCB_WINDOW_NONE) noteSource();
}

LinuxPasteboard::~LinuxPasteboard() = default;

void LinuxPasteboard::takeLatest() const {
  if (connection_) connection_->dispatch();
}

Subscription LinuxPasteboard::want(Wants wants) {
  return held_.add(wants);
}

Subscription LinuxPasteboard::leaveOut(Refusal refuses) {
  refuses_ = std::make_shared<Refusal>(std::move(refuses));
  return Subscription([held = refuses_] { *held = nullptr; });
}

std::optional<SelectionReader::Depth> LinuxPasteboard::wantedDepth() const {
  using Depth = SelectionReader::Depth;
  if (wants_ == Wants::text) return Depth::text;
  if (richTextDone_) return Depth::textOfRichText;
  return wants_ == Wants::types ? std::optional(Depth::types) : std::nullopt;
}

void LinuxPasteboard::wantsChanged() {
  const Wants wants = held_.highest();
  if (!connection_ || wants == wants_) return;
  if (wants < wants_) {
    wants_ = wants;
    dropUnwanted();
    return;
  }
  // A copy that came before the wish must not be seen as one that came after it: the answer arrives behind
  // the events of all earlier changes.
  ownerOf(clipboard_);
  takeLatest();
  wants_ = wants;
  if (owner_ == XCB_WINDOW_NONE || leftOut_ || isLeftOut()) return;
  pause_.stop();
  if (isOwnProcess(owner_)) {
    readOwnProcess(Counting::isNoChange);
  } else {
    startReading(Counting::isNoChange);
  }
}

// Ends what is read, and drops what is held, beyond what is wanted now.
void LinuxPasteboard::dropUnwanted() {
  const auto depth = wantedDepth();
  if (reader_->isReading()) {
    if (depth) {
      reader_->setDepth(*depth);
    } else {
      reader_->cancel();
      settle({}, readingCounting_);
    }
  }
  if (depth == SelectionReader::Depth::text || richTextDone_) return;
  if (!depth) contents_ = {};
  // What was asked for in vain is not asked for again.
  if (!depth || contents_.string) readDepth_ = depth;
  contents_.string.reset();
}

std::int64_t LinuxPasteboard::changeCount() const {
  takeLatest();
  return changeCount_;
}

bool LinuxPasteboard::hasRichText() const {
  // Whoever reduces formatted text writes over what is there: a copy that has come since must be noticed.
  takeLatest();
  return contents_.richText;
}

void LinuxPasteboard::readRichText(std::function<void(const std::string& plainText)> done) {
  if (!connection_) return;
  takeLatest();
  if (owner_ == XCB_WINDOW_NONE || contents_.concealed) return;
  const bool isKnown = readDepth_ && (!contents_.richText || *readDepth_ != SelectionReader::Depth::types);
  if (isKnown && !pause_.isActive()) {
    if (contents_.richText && contents_.string) done(std::string(*contents_.string));
    return;
  }
  richTextDone_ = std::move(done);
  if (pause_.isActive()) return;
  if (reader_->isReading()) {
    reader_->setDepth(*wantedDepth());
  } else if (isOwnProcess(owner_)) {
    readOwnProcess(Counting::isNoChange);
  } else {
    startReading(Counting::isNoChange);
  }
}

void LinuxPasteboard::deliverRichText() {
  // Whoever gets the text writes it over what is there: a copy that has come since must be noticed.
  takeLatest();
  const auto done = std::exchange(richTextDone_, nullptr);
  if (done && contents_.richText && contents_.string) done(std::string(*contents_.string));
  dropUnwanted();
}

bool LinuxPasteboard::isConcealed() const {
  return contents_.concealed;
}

std::optional<std::string> LinuxPasteboard::string() const {
  return wants_ == Wants::text ? contents_.string : std::nullopt;
}

std::optional<RunningApplication> LinuxPasteboard::sourceApplication() const {
  return source_;
}

void LinuxPasteboard::clearContents() {
  if (!connection_) return;
  reader_->cancel();
  pause_.stop();
  richTextDone_ = nullptr;
  noteSource();
  owner_ = XCB_WINDOW_NONE;
  leftOut_.reset();
  settle({}, Counting::isChange);
  // Not before the caller is done: a text that follows is then one change for everybody, and no program that
  // restores a clipboard that was cleared gets in between.
  clearing_.start(0);
}

void LinuxPasteboard::setString(std::string_view text) {
  if (!connection_) return;
  reader_->cancel();
  pause_.stop();
  clearing_.stop();
  richTextDone_ = nullptr;
  noteSource();
  // What is left out stays so in its plain form.
  if (contents_.string != text) leftOut_.reset();
  settle({false, false, textFromUtf8(std::string(text))}, Counting::isChange);
  readDepth_ = SelectionReader::Depth::text;
  dropUnwanted();
  QGuiApplication::clipboard()->setMimeData(new WrittenText(text));
  // The answer comes behind the events of all changes up to the write, so that those are handled now, as
  // overtaken by it.
  const xcb_window_t owner = ownerOf(clipboard_);
  owner_ = owner;
  takeLatest();
  // The server refuses a write that is older than the newest copy.
  if (owner != XCB_WINDOW_NONE && !isOwnProcess(owner)) ownerChanged(owner, XCB_CURRENT_TIME);
}

void LinuxPasteboard::handle(const XcbConnection::Event& event) {
  if ((event.response_type & 0x7f) != firstXFixesEvent_ + XCB_XFIXES_SELECTION_NOTIFY) return;
  const auto& notify = reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event);
  if (notify.selection != clipboard_) return;
  serverTime_ = notify.timestamp;
  ownerChanged(notify.owner, notify.selection_timestamp);
}

void LinuxPasteboard::ownerChanged(xcb_window_t owner, xcb_timestamp_t ownedSince) {
  reader_->cancel();
  richTextDone_ = nullptr;
  const xcb_window_t before = std::exchange(owner_, owner);
  // Its application may have become one of the ignored ones since.
  const bool isForeign = before != XCB_WINDOW_NONE && !isOwnProcess(before);
  if (isForeign && !leftOut_ && isLeftOut()) leftOut_ = LeftOut{source_};
  if (owner == XCB_WINDOW_NONE) {
    pause_.stop();
    if (leftOut_) {
      if (!leftOut_->ownerGone) leftOut_->ownerGone = serverTime_;
      leftOut_->heir = XCB_WINDOW_NONE;
    }
    noteSource();
    settle({}, before == XCB_WINDOW_NONE ? Counting::isNoChange : Counting::isChange);
    return;
  }
  if (isOwnProcess(owner)) {
    pause_.stop();
    readOwnProcess(Counting::isChange);
    return;
  }
  // What is there now is not known yet; what was there before must not be taken for it.
  contents_ = {};
  readDepth_.reset();
  ownedSince_ = ownedSince;
  if (takesOverWhatIsLeftOut(owner)) {
    // Still the copy of the application that it came from, whatever is in front by now.
    pause_.stop();
    leftOut_->ownerGone.reset();
    leftOut_->heir = owner;
    source_ = leftOut_->source;
    settle({false, leftOut_->isConcealed, std::nullopt}, Counting::isChange);
    return;
  }
  // Looking for the application in front costs too much for one program's flood of changes.
  if (!pause_.isActive() || !isSameClient(owner, before)) {
    noteSource();
    leftOut_ = isLeftOut() ? std::optional(LeftOut{source_}) : std::nullopt;
  }
  if (pause_.isActive()) return;
  if (std::chrono::steady_clock::now() - lastRead_ < kPause) {
    pause_.start(kPause);
    return;
  }
  startReading(Counting::isChange);
}

void LinuxPasteboard::startReading(Counting counting) {
  lastRead_ = std::chrono::steady_clock::now();
  // What is left out is read only for a user who asks for it.
  const auto depth = leftOut_ && !richTextDone_ ? std::nullopt : wantedDepth();
  if (!depth) {
    settle({}, counting);
    return;
  }
  readingCounting_ = counting;
  reader_->read(ownedSince_, *depth, [this](ClipboardContents contents) {
    readDepth_ = wantedDepth();
    settle(std::move(contents), readingCounting_);
  });
}

void LinuxPasteboard::readOwnProcess(Counting counting) {
  const QClipboard* clipboard = QGuiApplication::clipboard();
  // Not the owner any more: the event that says who is follows.
  const QMimeData* data = clipboard->ownsClipboard() ? clipboard->mimeData() : nullptr;
  if (!data) {
    contents_ = {};
    return;
  }
  const bool isCounted = dynamic_cast<const WrittenText*>(data) != nullptr;
  if (!isCounted && counting == Counting::isChange) {
    noteSource();
    leftOut_.reset();
  }
  const auto depth = wantedDepth();
  readDepth_ = depth;
  settle(depth ? contentsOf(*data, *depth, maximumTextBytes_) : ClipboardContents(),
         isCounted ? Counting::isNoChange : counting);
}

void LinuxPasteboard::settle(ClipboardContents contents, Counting counting) {
  contents_ = std::move(contents);
  if (contents_.concealed && !leftOut_) leftOut_ = LeftOut{source_, true};
  if (counting == Counting::isChange) ++changeCount_;
  if (richTextDone_) delivery_.start(0);
}

void LinuxPasteboard::noteSource() {
  source_ = workspace_.frontmostApplication();
}

bool LinuxPasteboard::isLeftOut() const {
  return refuses_ && *refuses_ && (*refuses_)(source_);
}

// A clipboard manager keeps what a program copied when that ends, or restores it when the clipboard is empty;
// it may leave out the mark of a secret. That is no new copy.
bool LinuxPasteboard::takesOverWhatIsLeftOut(xcb_window_t owner) const {
  if (!leftOut_) return false;
  const xcb_window_t manager = ownerOf(clipboardManager_);
  if (manager != XCB_WINDOW_NONE && isSameClient(owner, manager)) return true;
  if (leftOut_->heir != XCB_WINDOW_NONE && isSameClient(owner, leftOut_->heir)) return true;
  if (!leftOut_->ownerGone || serverTime_ - *leftOut_->ownerGone > kRestoring) return false;
  const auto active = connection_->word(connection_->root(), activeWindow_, XCB_ATOM_WINDOW);
  return !active || !isSameClient(owner, *active);
}

xcb_window_t LinuxPasteboard::ownerOf(xcb_atom_t selection) const {
  const auto cookie = xcb_get_selection_owner(connection_->get(), selection);
  const XcbOwned<xcb_get_selection_owner_reply_t> owner(
      xcb_get_selection_owner_reply(connection_->get(), cookie, nullptr));
  return owner ? owner->owner : xcb_window_t{XCB_WINDOW_NONE};
}

// The server gives each of its clients a range of identifiers of the same size.
bool LinuxPasteboard::isSameClient(xcb_window_t one, xcb_window_t other) const {
  return (one & ~ownWindowMask_) == (other & ~ownWindowMask_);
}

bool LinuxPasteboard::isOwnProcess(xcb_window_t window) const {
  return (window & ~ownWindowMask_) == ownWindowBase_;
}

}  // namespace harbor
