#include "xdesktop/PrivateDesktop.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/xcb_icccm.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QProcess>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <ostream>

namespace harbor {

bool waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
  QElapsedTimer elapsed;
  elapsed.start();
  while (!condition()) {
    if (elapsed.elapsed() > limit.count()) return false;
    QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    usleep(2000);
  }
  return true;
}

void waitFor(std::chrono::milliseconds time) {
  waitUntil([] { return false; }, time);
}

std::ostream& operator<<(std::ostream& stream, const Pixel& pixel) {
  return stream << "(" << pixel.red << ", " << pixel.green << ", " << pixel.blue << ")";
}

bool isNearly(const Pixel& a, const Pixel& b, int steps) {
  return std::abs(a.red - b.red) <= steps && std::abs(a.green - b.green) <= steps &&
         std::abs(a.blue - b.blue) <= steps;
}

Pixel blended(const Pixel& below, const Pixel& colour, double alpha) {
  const auto channel = [alpha](int under, int over) {
    return static_cast<int>(std::lround(over * alpha + under * (1.0 - alpha)));
  };
  return {channel(below.red, colour.red), channel(below.green, colour.green),
          channel(below.blue, colour.blue)};
}

PrivateDesktop::PrivateDesktop(int width, int height) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return;
  const pid_t child = fork();
  if (child == 0) {
    setpgid(0, 0);
    const int writer = dup(ends[1]);
    const std::string screen = std::to_string(width) + "x" + std::to_string(height) + "x24";
    const int nothing = open("/dev/null", O_WRONLY);
    dup2(nothing, 2);
    execlp("Xvfb", "Xvfb", "-displayfd", std::to_string(writer).c_str(), "-screen", "0", screen.c_str(),
           "-noreset", "-nolisten", "tcp", nullptr);
    _exit(127);
  }
  close(ends[1]);
  groups_.push_back(child);
  std::string number;
  for (char digit = 0; read(ends[0], &digit, 1) == 1 && digit != '\n';)
    number += digit;
  close(ends[0]);
  if (number.empty()) return;
  display_ = ":" + number;
  observer_ = XcbConnection::open(display_);
}

PrivateDesktop::~PrivateDesktop() {
  observer_.reset();
  // The server goes last, so that the programs do not write about its end.
  for (auto group = groups_.rbegin(); group != groups_.rend(); ++group) {
    kill(*group, SIGTERM);
    int status = 0;
    for (int i = 0; i < 100 && waitpid(*group, &status, WNOHANG) == 0; ++i)
      usleep(10000);
    kill(*group, SIGKILL);
    waitpid(*group, &status, WNOHANG);
  }
}

void PrivateDesktop::kill(pid_t group, int signal) {
  ::kill(-group, signal);
}

pid_t PrivateDesktop::start(const std::vector<std::string>& command) {
  std::vector<char*> arguments;
  for (const auto& word : command)
    arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  const pid_t child = fork();
  if (child == 0) {
    setpgid(0, 0);
    const std::string runtime = home() + "/run";
    std::filesystem::create_directories(runtime);
    std::filesystem::permissions(runtime, std::filesystem::perms::owner_all);
    setenv("DISPLAY", display_.c_str(), 1);
    setenv("HOME", home().c_str(), 1);
    setenv("XDG_CONFIG_HOME", (home() + "/.config").c_str(), 1);
    setenv("XDG_CACHE_HOME", (home() + "/.cache").c_str(), 1);
    setenv("XDG_RUNTIME_DIR", runtime.c_str(), 1);
    unsetenv("QT_QPA_PLATFORM");
    const int nothing = open("/dev/null", O_RDWR);
    dup2(nothing, 1);
    dup2(nothing, 2);
    execvp(arguments[0], arguments.data());
    _exit(127);
  }
  groups_.push_back(child);
  return child;
}

bool PrivateDesktop::startWindowManager(const std::vector<std::string>& command) {
  start(command);
  if (!waitUntil([this] { return !windowManagerName(*observer_).empty(); })) return false;
  waitFor(std::chrono::milliseconds(300));
  return true;
}

std::optional<pid_t> PrivateDesktop::startCompositor() {
  const pid_t compositor = start({"picom", "--config", "/dev/null", "--backend", "xrender"});
  const auto selection = observer_->atom("_NET_WM_CM_S0");
  const bool isOwned = waitUntil([&] {
    const XcbOwned<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
        observer_->get(), xcb_get_selection_owner(observer_->get(), selection), nullptr));
    return owner && owner->owner != XCB_NONE;
  });
  if (!isOwned) return std::nullopt;
  // It owns the screen before it has painted it.
  waitFor(std::chrono::milliseconds(300));
  return compositor;
}

std::string PrivateDesktop::run(const std::vector<std::string>& command) {
  QProcess process;
  auto environment = QProcessEnvironment::systemEnvironment();
  environment.insert(QStringLiteral("DISPLAY"), QString::fromStdString(display_));
  process.setProcessEnvironment(environment);
  QStringList arguments;
  for (std::size_t i = 1; i < command.size(); ++i)
    arguments << QString::fromStdString(command[i]);
  process.start(QString::fromStdString(command[0]), arguments);
  process.waitForFinished(10000);
  return process.readAllStandardOutput().toStdString();
}

Pixel PrivateDesktop::pixel(int x, int y) {
  const XcbOwned<xcb_get_image_reply_t> image(xcb_get_image_reply(
      observer_->get(),
      xcb_get_image(observer_->get(), XCB_IMAGE_FORMAT_Z_PIXMAP, observer_->root(),
                    static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 1, 1, 0xffffffff),
      nullptr));
  if (!image) return {-1, -1, -1};
  const auto* bytes = xcb_get_image_data(image.get());
  return {bytes[2], bytes[1], bytes[0]};
}

bool PrivateDesktop::showsPixel(int x, int y, const Pixel& expected, int steps) {
  return waitUntil([&] { return isNearly(pixel(x, y), expected, steps); }, std::chrono::seconds(3));
}

void PrivateDesktop::keepScreenshot(const std::string& name) {
  const XcbOwned<xcb_get_geometry_reply_t> root(xcb_get_geometry_reply(
      observer_->get(), xcb_get_geometry(observer_->get(), observer_->root()), nullptr));
  const XcbOwned<xcb_get_image_reply_t> image(
      xcb_get_image_reply(observer_->get(),
                          xcb_get_image(observer_->get(), XCB_IMAGE_FORMAT_Z_PIXMAP, observer_->root(), 0, 0,
                                        root->width, root->height, 0xffffffff),
                          nullptr));
  if (!image) return;
  std::filesystem::create_directories("screenshots");
  QImage(xcb_get_image_data(image.get()), root->width, root->height, QImage::Format_RGB32)
      .save(QString::fromStdString("screenshots/" + name + ".png"));
}

xcb_window_t PrivateDesktop::makeWindow(const PixelRect& frame, const Pixel& colour,
                                        const WindowOptions& options) {
  auto* xcb = observer_->get();
  const xcb_window_t window = xcb_generate_id(xcb);
  const std::uint32_t values[] = {
      static_cast<std::uint32_t>(colour.red << 16 | colour.green << 8 | colour.blue),
      options.isOverrideRedirect ? 1u : 0u, XCB_EVENT_MASK_BUTTON_PRESS};
  xcb_create_window(xcb, XCB_COPY_FROM_PARENT, window, observer_->root(), static_cast<std::int16_t>(frame.x),
                    static_cast<std::int16_t>(frame.y), static_cast<std::uint16_t>(frame.width),
                    static_cast<std::uint16_t>(frame.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                    XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK,
                    values);
  const auto atoms = [&](const std::string& prefix, const std::vector<std::string>& names) {
    std::vector<xcb_atom_t> result;
    for (const auto& name : names)
      result.push_back(observer_->atom(prefix + name));
    return result;
  };
  const auto set = [&](const char* name, xcb_atom_t type, const std::vector<std::uint32_t>& words) {
    xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, window, observer_->atom(name), type, 32,
                        static_cast<std::uint32_t>(words.size()), words.data());
  };
  if (!options.type.empty())
    set("_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM, atoms("_NET_WM_WINDOW_TYPE_", {options.type}));
  if (!options.states.empty()) set("_NET_WM_STATE", XCB_ATOM_ATOM, atoms("_NET_WM_STATE_", options.states));
  if (!options.rawTypes.empty()) set("_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM, atoms("", options.rawTypes));
  using Claim = WindowOptions::Claim;
  if (options.claim != Claim::none) {
    set("_NET_WM_PID", XCB_ATOM_CARDINAL,
        {options.claim == Claim::own ? static_cast<std::uint32_t>(getpid()) : options.claimed});
  }
  if (!options.program.empty()) {
    const std::string names = options.program + '\0' + options.program + '\0';
    xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                        static_cast<std::uint32_t>(names.size()), names.data());
  }
  if (!options.title.empty()) {
    xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, window, observer_->atom("_NET_WM_NAME"),
                        observer_->atom("UTF8_STRING"), 8, static_cast<std::uint32_t>(options.title.size()),
                        options.title.data());
  }
  xcb_size_hints_t hints{};
  xcb_icccm_size_hints_set_position(&hints, 1, frame.x, frame.y);
  xcb_icccm_size_hints_set_size(&hints, 1, frame.width, frame.height);
  xcb_icccm_set_wm_normal_hints(xcb, window, &hints);
  xcb_map_window(xcb, window);
  xcb_flush(xcb);
  waitUntil([&] {
    const XcbOwned<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(xcb, xcb_get_window_attributes(xcb, window), nullptr));
    return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
  });
  waitFor(std::chrono::milliseconds(150));
  return window;
}

void PrivateDesktop::activate(xcb_window_t window) {
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = window;
  message.type = observer_->atom("_NET_ACTIVE_WINDOW");
  message.data.data32[0] = 2;  // as a pager
  xcb_send_event(observer_->get(), 0, observer_->root(),
                 XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                 reinterpret_cast<const char*>(&message));
  xcb_flush(observer_->get());
  waitUntil([&] { return activeWindow() == window; });
  waitFor(std::chrono::milliseconds(150));
}

PixelRect PrivateDesktop::placeOf(xcb_window_t window) {
  auto* xcb = observer_->get();
  const XcbOwned<xcb_translate_coordinates_reply_t> origin(xcb_translate_coordinates_reply(
      xcb, xcb_translate_coordinates(xcb, window, observer_->root(), 0, 0), nullptr));
  const XcbOwned<xcb_get_geometry_reply_t> size(
      xcb_get_geometry_reply(xcb, xcb_get_geometry(xcb, window), nullptr));
  if (!origin || !size) return {};
  return {origin->dst_x, origin->dst_y, size->width, size->height};
}

xcb_window_t PrivateDesktop::activeWindow() {
  const auto words = rootWords("_NET_ACTIVE_WINDOW");
  return words.empty() ? xcb_window_t{XCB_NONE} : words.front();
}

std::vector<std::uint32_t> PrivateDesktop::rootWords(const std::string& property) {
  const auto found = observer_->property(observer_->root(), observer_->atom(property));
  return found ? found->words() : std::vector<std::uint32_t>();
}

}  // namespace harbor
