// Which Linux programs are which Mac applications: the one table behind presence tests, running tests and
// application look-ups by a Mac bundle identifier or name. An application without a Linux counterpart has a
// row without programs, or none: it is then never found.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace harbor {

struct MacApplication {
  std::string_view bundleIdentifier;
  std::string_view bundleName;
  // Desktop-entry identifiers without ".desktop", the most usual one first; unused places are empty.
  std::array<std::string_view, 5> desktopIdentifiers;
  // File names of the programs that run.
  std::array<std::string_view, 4> programs;
  // The bundle identifier of the application whose place it takes where that is not installed; empty: none.
  std::string_view standsInFor = {};
};

inline constexpr MacApplication kMacApplications[] = {
    {"com.apple.Safari", "Safari", {}, {}},
    {"com.apple.mail", "Mail", {}, {}},
    {"com.apple.Preview", "Preview", {}, {}},
    {"com.apple.QuickTimePlayerX", "QuickTime Player", {}, {}},
    {"com.google.Chrome",
     "Google Chrome",
     {"google-chrome", "google-chrome-stable", "com.google.Chrome", "google-chrome-beta",
      "google-chrome-unstable"},
     {"google-chrome", "google-chrome-stable", "chrome"}},
    {"org.chromium.Chromium",
     "Chromium",
     {"chromium", "chromium-browser", "chromium_chromium", "org.chromium.Chromium"},
     {"chromium", "chromium-browser"},
     "com.google.Chrome"},
    {"org.mozilla.firefox",
     "Firefox",
     {"firefox", "firefox-esr", "firefox_firefox", "org.mozilla.firefox"},
     {"firefox", "firefox-esr", "firefox-bin"}},
    {"org.mozilla.thunderbird",
     "Thunderbird",
     {"thunderbird", "thunderbird_thunderbird", "org.mozilla.Thunderbird"},
     {"thunderbird", "thunderbird-bin"}},
    {"org.videolan.vlc", "VLC", {"vlc", "vlc_vlc", "org.videolan.VLC"}, {"vlc"}},
    {"com.microsoft.VSCode", "Visual Studio Code", {"code", "code_code", "com.visualstudio.code"}, {"code"}},
    {"com.tidewell.HarborTray", "Harbor Tray", {"com.tidewell.HarborTray"}, {"harbor-tray"}},
};

// The row of a bundle identifier, and of the application that stands in for it; null when the table has none.
const MacApplication* macApplicationWithIdentifier(std::string_view bundleIdentifier);
const MacApplication* macApplicationStandingInFor(std::string_view bundleIdentifier);

// The row of a desktop-entry identifier, or of a program's file name; null when the table has none.
const MacApplication* macApplicationWithDesktopIdentifier(std::string_view identifier);
const MacApplication* macApplicationWithProgram(std::string_view fileName);

// The row of the name that a Mac application's bundle carries, with or without ".app"; null when the table
// has none.
const MacApplication* macApplicationWithBundleName(std::string_view bundleName);

}  // namespace harbor
