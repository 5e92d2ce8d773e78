// A desktop session that a test directs.
#pragma once

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "base/Observers.h"
#include "platform/Workspace.h"

namespace harbor {

class MemoryWorkspace : public Workspace {
 public:
  std::vector<RunningApplication> runningApplications() const override { return running; }
  std::optional<RunningApplication> frontmostApplication() const override { return frontmost; }
  std::optional<RunningApplication> runningApplication(std::int32_t processIdentifier) const override {
    for (const RunningApplication& application : running) {
      if (application.processIdentifier == processIdentifier) return application;
    }
    return std::nullopt;
  }
  bool isRunning(std::string_view bundleIdentifier) const override {
    return std::any_of(running.begin(), running.end(), [&](const RunningApplication& application) {
      return application.bundleIdentifier == bundleIdentifier;
    });
  }
  std::optional<std::string> fullPathForApplication(std::string_view name) const override {
    const auto entry = applicationPaths.find(std::string(name));
    return entry == applicationPaths.end() ? std::nullopt : std::optional(entry->second);
  }
  bool openFile(const FileUrl& url) override {
    openedFiles.push_back(url);
    return opens;
  }
  bool openUrl(std::string_view url) override {
    openedUrls.emplace_back(url);
    return opens;
  }
  void reveal(const std::vector<FileUrl>& urls) override {
    revealed.insert(revealed.end(), urls.begin(), urls.end());
  }
  Subscription onWillSleep(std::function<void()> handler) override {
    return willSleep_.add(std::move(handler));
  }
  Subscription onDidWake(std::function<void()> handler) override { return didWake_.add(std::move(handler)); }
  Subscription onActiveSpaceDidChange(std::function<void()> handler) override {
    return activeSpace_.add(std::move(handler));
  }

  void sleep() { willSleep_.notify(); }
  void wake() { didWake_.notify(); }
  std::size_t sleepObservers() const { return willSleep_.count(); }
  std::size_t wakeObservers() const { return didWake_.count(); }
  void changeSpace() { activeSpace_.notify(); }

  std::vector<RunningApplication> running;
  std::map<std::string, std::string> applicationPaths;  // name to path
  std::optional<RunningApplication> frontmost =
      RunningApplication{100, "org.example.Editor", FileUrl{"/Applications/Editor.app", true}, "Editor"};
  std::vector<FileUrl> openedFiles;
  std::vector<FileUrl> revealed;
  std::vector<std::string> openedUrls;
  bool opens = true;

 private:
  Observers<> willSleep_;
  Observers<> didWake_;
  Observers<> activeSpace_;
};

}  // namespace harbor
