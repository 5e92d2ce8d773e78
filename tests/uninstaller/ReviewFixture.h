// An application with related files in a home folder of the test's own, and the windows in which they are
// reviewed.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>

#include "platform/memory/MemoryPlatform.h"
#include "uninstaller/UninstallerController.h"

namespace harbor {

struct ReviewTest : testing::Test {
  ReviewTest() {
    std::string pattern = (std::filesystem::temp_directory_path() / "harbor-review-XXXXXX").string();
    top = std::filesystem::canonical(mkdtemp(pattern.data())).string();
    for (const char* name : {"Widget", "Gadget"}) {
      std::filesystem::create_directories(top + "/Applications/" + name + ".app");
    }
    platform.fileManager.localApplications = {FileUrl{top + "/Applications", true}};
    platform.fileManager.trash = [this](const std::string& path) {
      return !untrashable.contains(path) && std::filesystem::remove_all(path) > 0;
    };
    applications.reload();
  }
  ~ReviewTest() override { std::filesystem::remove_all(top); }

  std::string widget() const { return top + application; }
  std::string file(const std::string& path, std::size_t bytes = 10) {
    return homeFile("Library/" + path, bytes);
  }
  std::string homeFile(const std::string& path, std::size_t bytes = 10) {
    const std::string whole = top + "/home/" + path;
    std::filesystem::create_directories(std::filesystem::path(whole).parent_path());
    std::ofstream(whole) << std::string(bytes, 'x');
    return whole;
  }

  MenuItem row(const std::string& path) const {
    MenuItem item;
    item.path = path;
    return item;
  }
  // Opens the review of the application and lets the scan run to its end.
  MemoryReviewWindows::Window& review() {
    controller.uninstallApp(row(widget()));
    platform.runLoop.runBackground();
    platform.runLoop.runQueued();
    return *windows.open.back();
  }
  MemoryReviewWindows::Window& history() {
    controller.showUninstalledApp(row(widget()));
    platform.runLoop.runQueued();
    return *windows.open.back();
  }
  std::string section() {
    Menu menu;
    controller.appendSection(menu, MenuBuild::later);
    std::string text = describeMenu(menu);
    for (std::size_t at = text.find(top); at != std::string::npos; at = text.find(top))
      text.replace(at, top.size(), "TOP");
    return text;
  }

  std::string top;
  std::string application = "/Applications/Widget.app";
  MemoryPlatform platform;
  MemoryReviewWindows& windows = platform.reviewWindows;
  MemoryPreviewPanel& preview = platform.previewPanel;
  std::set<std::string> untrashable;
  TWDialog dialog{platform.alertPanel, platform.settings};
  OpenWindows openWindows{platform.application};
  TWApplications applications{platform.fileManager, platform.applicationBundles};
  TWUninstaller uninstaller{platform.settings, platform.propertyLists};
  std::vector<std::string> systemApps;
  bool grantsAccess = true;
  BundleInformation bundle{"Widget", std::nullopt, std::nullopt, std::nullopt, "com.example.Widget"};
  UninstallerController controller{
      {platform.runLoop, platform.text, dialog, platform.workspace, platform.fileManager, windows, preview,
       openWindows, applications, uninstaller, platform.softwarePackages},
      platform.applicationBundles,
      {systemApps, "Harbor Tray", [this] { return top + "/home"; }, top, [this] { return grantsAccess; },
       [this](const std::string& path) { return path == widget() ? bundle : BundleInformation{}; }}};
};

}  // namespace harbor
