#include "clipboard/ClipboardController.h"

#include <chrono>
#include <utility>

#include "clipboard/HistoryTitle.h"
#include "platform/ApplicationListing.h"
#include "settings/SettingsKeys.h"

namespace harbor {
namespace {

constexpr std::chrono::milliseconds kTickInterval{1000};

}  // namespace

ClipboardController::ClipboardController(TWClipboard& model, SettingsStore& settings, Pasteboard& pasteboard,
                                         RunLoop& runLoop, const Text& text,
                                         const ApplicationBundles& bundles, TWDialog& dialog,
                                         MenuItem::Action reloadApps)
    : clipboardModel(model),
      settings_(settings),
      pasteboard_(pasteboard),
      runLoop_(runLoop),
      text_(text),
      bundles_(bundles),
      dialog_(dialog),
      reloadApps_(std::move(reloadApps)),
      leftOut_(pasteboard.leaveOut([this](const std::optional<RunningApplication>& source) {
        return source && source->bundleUrl && clipboardModel.isBlacklisted(*source->bundleUrl);
      })) {}

void ClipboardController::appendSection(Menu& menu, MenuBuild build) {
  const bool isOn = clipboardModel.isClipboardEnabled;
  if (!isOn) {
    stopTimer();
  } else if (build == MenuBuild::first) {
    startTimer();
    lastChangeCount = pasteboard_.changeCount();
  }

  Menu rows = historyRows();
  MenuItem clearAll = menuItem("Clear All", [this](const MenuItem& sender) { clipboardClearAll(sender); });
  clearAll.enabled = !rows.empty();

  Menu submenu;
  submenu.push_back(menuItem(
      "Enable", [this](const MenuItem& sender) { clipboardEnabled(sender); }, stateFor(isOn)));
  submenu.push_back(MenuItem::separator());
  submenu.push_back(blacklistSubmenu());
  submenu.push_back(std::move(clearAll));
  submenu.push_back(MenuItem::separator());
  submenu.insert(submenu.end(), std::make_move_iterator(rows.begin()), std::make_move_iterator(rows.end()));
  menu.push_back(menuSection("Clipboard", std::move(submenu), isOn));
}

MenuItem ClipboardController::blacklistSubmenu() {
  clipboardModel.loadApplications();

  Menu submenu;
  submenu.push_back(menuItem("Reload Apps", reloadApps_));
  const auto appendRows = [&](const std::vector<FileUrl>& applications, MenuItem::State state) {
    submenu.push_back(MenuItem::separator());
    for (std::size_t i = 0; i < applications.size(); ++i) {
      const std::string& path = applications[i].path;
      MenuItem row = menuItem(
          bundles_.displayName(path), [this](const MenuItem& sender) { clipboardApplicationClicked(sender); },
          state);
      row.tag = static_cast<int>(i);
      row.path = path;
      if (state == MenuItem::State::off) row.toolTip = path;
      submenu.push_back(std::move(row));
    }
  };
  appendRows(clipboardModel.blacklistedApplicationsSorted, MenuItem::State::on);
  appendRows(clipboardModel.applicationsSorted, MenuItem::State::off);
  return menuSection("Blacklist Apps", std::move(submenu));
}

Menu ClipboardController::historyRows() {
  Menu rows;
  const auto current = pasteboard_.string();
  for (std::size_t i = 0; i < clipboardModel.clipboardData.size(); ++i) {
    const SharedText& entry = clipboardModel.clipboardData[i];
    if (entry.empty()) continue;
    MenuItem row = menuItem(historyTitle(text_, entry.string()),
                            [this, entry](const MenuItem&) { clipboardClicked(entry); });
    row.tag = static_cast<int>(i);
    row.toolTip = entry;
    row.bold = current && entry == *current;
    row.enabled = clipboardModel.isClipboardEnabled;
    rows.push_back(std::move(row));
  }
  return rows;
}

void ClipboardController::clipboardEnabled(const MenuItem& sender) {
  const bool enables = sender.state != MenuItem::State::on;
  clipboardModel.isClipboardEnabled = enables;
  if (enables) {
    startTimer();
    // What is on the pasteboard now was copied while nothing was to be recorded, or is a chosen entry.
    lastChangeCount = pasteboard_.changeCount();
    didClickClipboard = false;
  } else {
    stopTimer();
  }
  settings_.setBool(settings_keys::clipboardEnabled, enables);
}

void ClipboardController::clipboardClicked(const SharedText& entry) {
  if (clipboardTimer) tick();
  didClickClipboard = true;
  pasteboard_.setString(entry.string());
}

void ClipboardController::clipboardClearAll(const MenuItem&) {
  if (!dialog_.confirm("Cancel", "Clear", "Clear Clipboard",
                       "Click the Clear button in order to erase the app's clipboard history."))
    return;
  clipboardModel.clearHistory();
  didClearClipboard = true;
}

void ClipboardController::clipboardApplicationClicked(const MenuItem& sender) {
  didClickBlacklistedApp = true;
  if (sender.state == MenuItem::State::on) {
    clipboardModel.removeFromBlacklist({sender.path});
  } else if (const auto application = existingFile(sender.path)) {
    clipboardModel.addToBlacklist(*application);
  } else if (dialog_.confirm("Cancel", "Reload Apps", "App Missing",
                             "Please refresh by clicking Reload Apps")) {
    reloadApps_(sender);
  }
}

void ClipboardController::rewritePasteboard(const std::string& text) {
  if (clipboardTimer) tick();
  pasteboard_.setString(text);
  if (clipboardTimer) lastChangeCount = pasteboard_.changeCount();
}

void ClipboardController::startTimer() {
  if (clipboardTimer) return;
  wantedText_ = pasteboard_.want(Pasteboard::Wants::text);
  clipboardTimer = runLoop_.repeat(kTickInterval, [this] { tick(); });
}

void ClipboardController::stopTimer() {
  clipboardTimer.reset();
  wantedText_.reset();
  lastChangeCount = 0;
}

void ClipboardController::tick() {
  const std::int64_t changeCount = pasteboard_.changeCount();
  if (changeCount == lastChangeCount) return;
  lastChangeCount = changeCount;

  // Whatever application is in front: otherwise the mark would stay and cost the user a later copy.
  if (std::exchange(didClickClipboard, false)) return;

  const auto source = pasteboard_.sourceApplication();
  if (!source || !source->bundleUrl) return;
  if (clipboardModel.isBlacklisted(*source->bundleUrl)) return;
  if (pasteboard_.isConcealed()) return;
  if (const auto text = pasteboard_.string()) clipboardModel.addEntry(*text);
}

}  // namespace harbor
