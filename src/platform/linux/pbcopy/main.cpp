// pbcopy: makes standard input the contents of the X clipboard; with no input, empties the clipboard. With
// contents it goes on in the background and serves them until another program copies something.

#include <fcntl.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

namespace {

constexpr int kSucceeded = 0;
constexpr int kFailed = 1;

struct Free {
  void operator()(void* memory) const { std::free(memory); }
};
template <typename T>
using Reply = std::unique_ptr<T, Free>;

std::string readInput() {
  std::string input;
  char buffer[65536];
  for (;;) {
    const ssize_t count = ::read(STDIN_FILENO, buffer, sizeof buffer);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return input;
    input.append(buffer, static_cast<std::size_t>(count));
  }
}

class Clipboard {
 public:
  explicit Clipboard(xcb_connection_t* connection) : x_(connection) {
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(x_)).data;
    window_ = xcb_generate_id(x_);
    xcb_create_window(x_, 0, window_, screen->root, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    clipboard_ = atom("CLIPBOARD");
    targets_ = atom("TARGETS");
    textTargets_[0] = atom("UTF8_STRING");
    textTargets_[1] = atom("text/plain;charset=utf-8");
    textTargets_[2] = atom("TEXT");
    textTargets_[3] = XCB_ATOM_STRING;
  }

  bool clear() { return setOwner(XCB_NONE); }
  bool own() { return setOwner(window_); }

  // Until somebody else owns the clipboard or the X server goes.
  void serve(std::string_view text) {
    while (const Reply<xcb_generic_event_t> event{xcb_wait_for_event(x_)}) {
      const int type = event->response_type & 0x7f;
      if (type == XCB_SELECTION_CLEAR) return;
      if (type == XCB_SELECTION_REQUEST)
        answer(*reinterpret_cast<const xcb_selection_request_event_t*>(event.get()), text);
    }
  }

 private:
  xcb_atom_t atom(const char* name) {
    const auto cookie = xcb_intern_atom(x_, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
    const Reply<xcb_intern_atom_reply_t> reply{xcb_intern_atom_reply(x_, cookie, nullptr)};
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
  }

  bool setOwner(xcb_window_t owner) {
    xcb_set_selection_owner(x_, owner, clipboard_, XCB_CURRENT_TIME);
    const Reply<xcb_get_selection_owner_reply_t> reply{
        xcb_get_selection_owner_reply(x_, xcb_get_selection_owner(x_, clipboard_), nullptr)};
    return reply && reply->owner == owner;
  }

  void answer(const xcb_selection_request_event_t& request, std::string_view text) {
    xcb_selection_notify_event_t notify{};
    notify.response_type = XCB_SELECTION_NOTIFY;
    notify.time = request.time;
    notify.requestor = request.requestor;
    notify.selection = request.selection;
    notify.target = request.target;
    notify.property = request.property == XCB_ATOM_NONE ? request.target : request.property;
    bool isText = false;
    for (const xcb_atom_t target : textTargets_)
      isText = isText || request.target == target;
    if (request.target == targets_) {
      const xcb_atom_t offered[] = {targets_, textTargets_[0], textTargets_[1], textTargets_[2],
                                    textTargets_[3]};
      xcb_change_property(x_, XCB_PROP_MODE_REPLACE, request.requestor, notify.property, XCB_ATOM_ATOM, 32,
                          std::size(offered), offered);
    } else if (isText) {
      const xcb_atom_t type = request.target == textTargets_[2] ? textTargets_[0] : request.target;
      xcb_change_property(x_, XCB_PROP_MODE_REPLACE, request.requestor, notify.property, type, 8,
                          static_cast<std::uint32_t>(text.size()), text.data());
    } else {
      notify.property = XCB_ATOM_NONE;
    }
    xcb_send_event(x_, 0, request.requestor, 0, reinterpret_cast<const char*>(&notify));
    xcb_flush(x_);
  }

  xcb_connection_t* x_;
  xcb_window_t window_ = XCB_NONE;
  xcb_atom_t clipboard_ = XCB_ATOM_NONE;
  xcb_atom_t targets_ = XCB_ATOM_NONE;
  xcb_atom_t textTargets_[4] = {};
};

// Whoever waits for this command's output must not wait for the server that it leaves behind.
void leaveStandardStreams() {
  const int nothing = ::open("/dev/null", O_RDWR);
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
    ::dup2(nothing, stream);
}

}  // namespace

int main() {
  const std::string text = readInput();
  xcb_connection_t* const connection = xcb_connect(nullptr, nullptr);
  if (xcb_connection_has_error(connection) != 0) {
    std::fputs("pbcopy: there is no X server to copy to\n", stderr);
    return kFailed;
  }
  Clipboard clipboard(connection);
  if (text.empty()) return clipboard.clear() ? kSucceeded : kFailed;

  // One request has to carry all of it.
  constexpr std::size_t kRequestHeader = 64;
  if (text.size() + kRequestHeader > std::size_t{xcb_get_maximum_request_length(connection)} * 4) {
    std::fputs("pbcopy: the text is too long for the X server\n", stderr);
    return kFailed;
  }
  if (!clipboard.own()) return kFailed;
  const pid_t server = ::fork();
  if (server < 0) return kFailed;
  // The connection goes on in the child alone.
  if (server > 0) ::_exit(kSucceeded);
  ::setsid();
  leaveStandardStreams();
  clipboard.serve(text);
  return kSucceeded;
}
