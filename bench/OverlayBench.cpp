// What the overlays cost on a virtual X server: one focus tick with 50 windows, and the way from a movement
// of the pointer to the moved ring.
#include <benchmark/benchmark.h>
#include <xcb/xtest.h>

#include <QApplication>
#include <algorithm>
#include <chrono>
#include <vector>

#include "overlays/FocusModeController.h"
#include "overlays/TWStyleKit.h"
#include "platform/OpenWindows.h"
#include "platform/linux/LinuxPointerMonitor.h"
#include "platform/linux/LinuxWorkspace.h"
#include "platform/memory/MemoryPlatform.h"
#include "xdesktop/PrivateDesktop.h"

namespace harbor {
namespace {

using Clock = std::chrono::steady_clock;

double microseconds(Clock::duration time) {
  return std::chrono::duration<double, std::micro>(time).count();
}

double quantile(std::vector<double> values, double part) {
  std::sort(values.begin(), values.end());
  return values[static_cast<std::size_t>(part * static_cast<double>(values.size() - 1))];
}

void focusTick(benchmark::State& state) {
  constexpr int kWindows = 50;
  PrivateDesktop desktop(1280, 800);
  if (!desktop.isUp() || !desktop.startWindowManager({"openbox"})) {
    state.SkipWithError("no X server or window manager");
    return;
  }
  for (int i = 0; i < kWindows; ++i)
    desktop.makeWindow({20 + 10 * i, 20 + 8 * i, 300, 200}, {200, 120, 40}, {.title = "window"});
  qputenv("DISPLAY", QByteArray::fromStdString(desktop.display()));
  Overlays overlays(desktop);
  const XdgEnvironment environment = XdgEnvironment::fromProcess();
  const DesktopEntries entries(environment);
  const LinuxWorkspace workspace(entries);
  MemoryPlatform platform;
  TWDialog dialog(platform.alertPanel, platform.settings);
  VeilConflict conflict(platform.settings, dialog);
  OpenWindows openWindows(platform.application);
  TWFocusMode model;
  model.isFocusModeEnabled = true;
  FocusModeController focus(model, platform.settings, conflict, platform.runLoop, workspace, overlays.server,
                            overlays.windows,
                            {platform.settings, platform.propertyLists, openWindows, platform.colourPanes});
  focus.applyFocusMode();

  std::vector<double> ticks;
  for (auto _ : state) {
    // Each tick is an event of its own: what was seen at the one before is forgotten.
    waitFor(std::chrono::milliseconds(5));
    const auto begin = Clock::now();
    focus.trackFrontWindow();
    const auto time = Clock::now() - begin;
    state.SetIterationTime(std::chrono::duration<double>(time).count());
    ticks.push_back(microseconds(time));
  }
  state.counters["median_us"] = quantile(ticks, 0.5);
  state.counters["p99_us"] = quantile(ticks, 0.99);
}

// From the sending of a movement to the server's word, on another connection, that the ring stands there: the
// way through the input extension, the monitor, the drawing and the move.
void ringFollowsPointer(benchmark::State& state) {
  constexpr double kSide = 70;
  PrivateDesktop desktop(1280, 800);
  if (!desktop.isUp() || !desktop.startWindowManager({"openbox"}) || !desktop.startCompositor()) {
    state.SkipWithError("no X server, window manager or compositing manager");
    return;
  }
  Overlays overlays(desktop);
  LinuxPointerMonitor pointer(overlays.connection.get());
  const auto ring = overlays.windows.make({.frame = overlays.server.mainDisplayBounds(),
                                           .surface = OverlayWindowSpec::Surface::translucent,
                                           .level = kScreenSaverWindowLevel});
  ring->setIgnoresMouseEvents();
  const auto follow = [&] {
    const auto at = pointer.location();
    ring->setLevel(kScreenSaverWindowLevel);
    ring->orderFrontRegardless();
    ring->setDrawing(TWStyleKit::drawRing("Blue Color"), {at.x - kSide / 2, at.y - kSide / 2, kSide, kSide});
  };
  follow();
  const auto monitor = pointer.addGlobalMonitor(PointerEvents::moved, follow);
  waitFor(std::chrono::milliseconds(200));

  auto& observer = desktop.observer();
  observer.selectEvents(observer.root(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
  int arrivedAt = -1;
  const auto watching = observer.onEvent([&](const XcbConnection::Event& event) {
    if ((event.response_type & 0x7f) != XCB_CONFIGURE_NOTIFY) return;
    const auto& notify = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
    if (notify.width == kSide) arrivedAt = notify.x;
  });
  std::vector<double> delays;
  int step = 0;
  for (auto _ : state) {
    const int x = 200 + 3 * (++step % 200);
    const auto begin = Clock::now();
    xcb_test_fake_input(observer.get(), XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, observer.root(),
                        static_cast<std::int16_t>(x), 400, 0);
    xcb_flush(observer.get());
    while (arrivedAt != x - static_cast<int>(kSide / 2) && Clock::now() - begin < std::chrono::seconds(1))
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 100);
    const auto time = Clock::now() - begin;
    state.SetIterationTime(std::chrono::duration<double>(time).count());
    delays.push_back(microseconds(time));
    // 125 movements a second, as a mouse sends them.
    const auto next = begin + std::chrono::milliseconds(8);
    const auto left = std::chrono::duration_cast<std::chrono::microseconds>(next - Clock::now());
    if (left.count() > 0) usleep(static_cast<useconds_t>(left.count()));
  }
}

// How long the server takes to paint the whole screen through a veil of scan lines: what a user notices of
// it.
void repaintBelowScanLines(benchmark::State& state) {
  PrivateDesktop desktop(1920, 1080);
  if (!desktop.isUp()) {
    state.SkipWithError("no X server");
    return;
  }
  Overlays overlays(desktop);
  const auto window = desktop.makeWindow({0, 0, 1920, 1080}, {200, 120, 40}, {.isOverrideRedirect = true});
  const auto veil = overlays.windows.make({.frame = overlays.server.mainDisplayBounds(),
                                           .surface = OverlayWindowSpec::Surface::translucent,
                                           .level = kScreenSaverWindowLevel});
  veil->setBackgroundColour(Colour::black().withAlpha(0.45));
  veil->setIgnoresMouseEvents();
  if (state.range(0)) veil->orderFrontRegardless();
  waitFor(std::chrono::milliseconds(200));
  auto* xcb = desktop.observer().get();
  std::uint32_t pixel = 0x304050;
  for (auto _ : state) {
    pixel ^= 0xffffff;
    xcb_change_window_attributes(xcb, window, XCB_CW_BACK_PIXEL, &pixel);
    xcb_clear_area(xcb, 0, window, 0, 0, 0, 0);
    // An answer comes only when everything before it is done.
    desktop.pixel(0, 0);
  }
}

BENCHMARK(focusTick)->UseManualTime()->Iterations(300)->Unit(benchmark::kMicrosecond);
BENCHMARK(ringFollowsPointer)->UseManualTime()->Iterations(1000)->Unit(benchmark::kMicrosecond);
BENCHMARK(repaintBelowScanLines)->ArgName("veil")->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace harbor

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
