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

// Tells what this program has written from what one of its own text fields has copied.
class WrittenText : public QMimeData {
 public:
  explicit WrittenText(std::string_view text) {
    setText(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
  }
};

ClipboardContents contentsOf(const QMimeData& data, std::size_t maximumTextBytes) {
  ClipboardTypes types;
  const QStringList formats = data.formats();
  for (const ClipboardTypeName& name : kClipboardTypeNames) {
    if (formats.contains(QLatin1String(name.name.data(), static_cast<qsizetype>(name.name.size()))))
      types.add(name.type);
  }
  ClipboardContents contents{types.hasRichText(), types.isConcealed(), std::nullopt};
  if (!contents.concealed && data.hasText()) {
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
  clipboard_ = connection_->atom("CLIPBOARD");
  const xcb_setup_t* setup = xcb_get_setup(x11->connection());
  ownWindowBase_ = setup->resource_id_base;
  ownWindowMask_ = setup->resource_id_mask;

  reader_ = std::make_unique<SelectionReader>(*connection_, limits);
  events_ = connection_->onEvent([this](const XcbConnection::Event& event) { handle(event); });
  pause_.setSingleShot(true);
  QObject::connect(&pause_, &QTimer::timeout, &pause_, [this] {
    noteSource();
    startReading();
  });
  clearing_.setSingleShot(true);
  QObject::connect(&clearing_, &QTimer::timeout, &clearing_, [this] {
    takeLatest();
    if (!hasOwner_) QGuiApplication::clipboard()->clear();
  });

  xcb_xfixes_select_selection_input(connection_->get(), connection_->root(), clipboard_,
                                    XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                        XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                        XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
  const auto cookie = xcb_get_selection_owner(connection_->get(), clipboard_);
  const XcbOwned<xcb_get_selection_owner_reply_t> owner(
      xcb_get_selection_owner_reply(connection_->get(), cookie, nullptr));
  if (owner && owner->owner != XCB_WINDOW_NONE) {
    hasOwner_ = true;
    noteSource();
    reader_->read(XCB_CURRENT_TIME,
                  [this](ClipboardContents contents) { settle(std::move(contents), Counting::isNoChange); });
  }
}

LinuxPasteboard::~LinuxPasteboard() = default;

void LinuxPasteboard::takeLatest() const {
  if (connection_) connection_->dispatch();
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

bool LinuxPasteboard::isConcealed() const {
  return contents_.concealed;
}

std::optional<std::string> LinuxPasteboard::string() const {
  return contents_.string;
}

std::optional<RunningApplication> LinuxPasteboard::sourceApplication() const {
  return source_;
}

void LinuxPasteboard::clearContents() {
  if (!connection_) return;
  reader_->cancel();
  pause_.stop();
  noteSource();
  hasOwner_ = false;
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
  noteSource();
  settle({false, false, textFromUtf8(std::string(text))}, Counting::isChange);
  hasOwner_ = true;
  QGuiApplication::clipboard()->setMimeData(new WrittenText(text));
  // The answer comes behind the events of all changes up to the write, so that those are handled now, as
  // overtaken by it.
  const auto cookie = xcb_get_selection_owner(connection_->get(), clipboard_);
  const XcbOwned<xcb_get_selection_owner_reply_t> owner(
      xcb_get_selection_owner_reply(connection_->get(), cookie, nullptr));
  takeLatest();
  // The server refuses a write that is older than the newest copy.
  if (owner && !isOwnProcess(owner->owner)) ownerChanged(owner->owner, XCB_CURRENT_TIME);
}

void LinuxPasteboard::handle(const XcbConnection::Event& event) {
  if ((event.response_type & 0x7f) != firstXFixesEvent_ + XCB_XFIXES_SELECTION_NOTIFY) return;
  const auto& notify = reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event);
  if (notify.selection == clipboard_) ownerChanged(notify.owner, notify.selection_timestamp);
}

void LinuxPasteboard::ownerChanged(xcb_window_t owner, xcb_timestamp_t time) {
  reader_->cancel();
  if (owner == XCB_WINDOW_NONE) {
    pause_.stop();
    noteSource();
    settle({}, std::exchange(hasOwner_, false) ? Counting::isChange : Counting::isNoChange);
    return;
  }
  hasOwner_ = true;
  if (isOwnProcess(owner)) {
    pause_.stop();
    readOwnProcess();
    return;
  }
  // What is there now is not known yet; what was there before must not be taken for it.
  contents_ = {};
  ownedSince_ = time;
  if (pause_.isActive()) return;
  if (std::chrono::steady_clock::now() - lastRead_ < kPause) {
    pause_.start(kPause);
    return;
  }
  noteSource();
  startReading();
}

void LinuxPasteboard::startReading() {
  lastRead_ = std::chrono::steady_clock::now();
  reader_->read(ownedSince_,
                [this](ClipboardContents contents) { settle(std::move(contents), Counting::isChange); });
}

void LinuxPasteboard::readOwnProcess() {
  const QClipboard* clipboard = QGuiApplication::clipboard();
  // Not the owner any more: the event that says who is follows.
  const QMimeData* data = clipboard->ownsClipboard() ? clipboard->mimeData() : nullptr;
  if (!data) {
    contents_ = {};
    return;
  }
  ClipboardContents contents = contentsOf(*data, maximumTextBytes_);
  const bool isCounted = dynamic_cast<const WrittenText*>(data) != nullptr;
  if (!isCounted) noteSource();
  settle(std::move(contents), isCounted ? Counting::isNoChange : Counting::isChange);
}

void LinuxPasteboard::settle(ClipboardContents contents, Counting counting) {
  contents_ = std::move(contents);
  if (counting == Counting::isChange) ++changeCount_;
}

void LinuxPasteboard::noteSource() {
  source_ = workspace_.frontmostApplication();
}

bool LinuxPasteboard::isOwnProcess(xcb_window_t window) const {
  return (window & ~ownWindowMask_) == ownWindowBase_;
}

}  // namespace harbor
