// A desktop session that a test directs.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/Workspace.h"

namespace harbor {

class MemoryWorkspace : public Workspace {
 public:
  std::vector<RunningApplication> runningApplications() const override { return running; }
  std::optional<RunningApplication> frontmostApplication() const override { return frontmost; }
  bool openFile(const FileUrl& url) override {
    openedFiles.push_back(url);
    return opens;
  }
  bool openUrl(std::string_view url) override {
    openedUrls.emplace_back(url);
    return opens;
  }
  Subscription onWillSleep(std::function<void()> handler) override {
    return add(willSleep_, std::move(handler));
  }
  Subscription onDidWake(std::function<void()> handler) override { return add(didWake_, std::move(handler)); }

  void sleep() { notify(willSleep_); }
  void wake() { notify(didWake_); }

  std::vector<RunningApplication> running;
  std::optional<RunningApplication> frontmost =
      RunningApplication{100, "org.example.Editor", FileUrl{"/Applications/Editor.app", true}, "Editor"};
  std::vector<FileUrl> openedFiles;
  std::vector<std::string> openedUrls;
  bool opens = true;

 private:
  using Handlers = std::shared_ptr<std::map<int, std::function<void()>>>;

  Subscription add(const Handlers& handlers, std::function<void()> handler) {
    const int number = nextHandler_++;
    handlers->emplace(number, std::move(handler));
    return Subscription([handlers = std::weak_ptr(handlers), number] {
      if (const auto held = handlers.lock()) held->erase(number);
    });
  }
  static void notify(const Handlers& handlers) {
    const auto copy = *handlers;
    for (const auto& [number, handler] : copy)
      handler();
  }

  int nextHandler_ = 1;
  Handlers willSleep_ = std::make_shared<std::map<int, std::function<void()>>>();
  Handlers didWake_ = std::make_shared<std::map<int, std::function<void()>>>();
};

}  // namespace harbor
