#include "platform/memory/MemoryWindowServer.h"

#include <algorithm>
#include <utility>

namespace harbor {
namespace {

int layerOf(const MemoryWindowServer::Window& window) {
  return window.info.layer.value_or(0);
}

bool holds(const Rect& bounds, Point point) {
  return point.x >= bounds.x && point.x < bounds.x + bounds.width && point.y >= bounds.y &&
         point.y < bounds.y + bounds.height;
}

}  // namespace

WindowLevel MemoryWindowServer::levelForKey(WindowLevelKey) const {
  return -2147483603;
}

std::vector<WindowInfo> MemoryWindowServer::windowList(WindowListOptions options) const {
  ++listQueries;
  std::vector<WindowInfo> list;
  if (!listsWindows) return list;
  for (const Window& window : windows) {
    if (window.isDesktopElement && contains(options, WindowListOptions::excludeDesktopElements)) continue;
    if (window.isOwnOverlay && window.ignoresMouseEvents) continue;
    list.push_back(window.info);
  }
  return list;
}

WindowNumber MemoryWindowServer::windowNumberAtPoint(Point point, WindowNumber below) const {
  bool reached = below == kNoWindow;
  for (const Window& window : windows) {
    const bool hit = !window.ignoresMouseEvents && window.info.bounds && holds(*window.info.bounds, point);
    if (reached && hit) return window.info.number.value_or(kNoWindow);
    if (window.info.number == below) reached = true;
  }
  return kNoWindow;
}

std::shared_ptr<const Picture> MemoryWindowServer::pictureOfWindow(WindowNumber number) const {
  picturesTaken.push_back(number);
  const auto entry = pictures.find(number);
  return entry == pictures.end() ? nullptr : entry->second;
}

WindowNumber MemoryWindowServer::open(std::int32_t ownerPid, Rect bounds, std::optional<std::string> name) {
  const WindowNumber number = nextNumber();
  insert({{0, ownerPid, std::nullopt, std::move(name), number, bounds}});
  return number;
}

void MemoryWindowServer::insert(Window window) {
  const auto place = std::find_if(windows.begin(), windows.end(),
                                  [&](const Window& other) { return layerOf(other) <= layerOf(window); });
  windows.insert(place, std::move(window));
}

void MemoryWindowServer::raise(WindowNumber number) {
  if (const Window* found = find(number)) {
    Window window = *found;
    close(number);
    insert(std::move(window));
  }
}

void MemoryWindowServer::close(WindowNumber number) {
  std::erase_if(windows, [&](const Window& window) { return window.info.number == number; });
}

bool MemoryWindowServer::moveBelow(Window window, WindowNumber other) {
  if (!find(other)) return false;
  close(*window.info.number);
  const auto place = std::find_if(windows.begin(), windows.end(),
                                  [&](const Window& entry) { return entry.info.number == other; });
  windows.insert(place + 1, std::move(window));
  return true;
}

MemoryWindowServer::Window* MemoryWindowServer::find(WindowNumber number) {
  const auto found = std::find_if(windows.begin(), windows.end(),
                                  [&](const Window& window) { return window.info.number == number; });
  return found == windows.end() ? nullptr : &*found;
}

std::vector<WindowNumber> MemoryWindowServer::stack() const {
  std::vector<WindowNumber> numbers;
  for (const Window& window : windows)
    numbers.push_back(window.info.number.value_or(kNoWindow));
  return numbers;
}

}  // namespace harbor
