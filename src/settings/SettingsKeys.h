// Every key of the settings database. One flat namespace, case-sensitive; the value of an option is the exact
// title of the menu item that was chosen.
#pragma once

namespace harbor::settings_keys {

// Booleans: an alert's "Do not show again" box was ticked.
inline constexpr const char* startMessageAlertSuppression = "StartMessageAlertSuppression";
inline constexpr const char* focusTintAlertSuppression = "FocusTintAlertSuppression";
inline constexpr const char* sipStatusAlertSuppression = "SIPStatusAlertSuppression";
inline constexpr const char* hideDesktopIconsAlertSuppression = "HideDesktopIconsAlertSuppression";

inline constexpr const char* launchAtLoginEnabled = "LaunchAtLoginEnabled";  // Boolean

inline constexpr const char* focusModeEnabled = "FocusModeEnabled";              // Boolean
inline constexpr const char* selectedDimColor = "SelectedDimColor";              // text
inline constexpr const char* selectedOpacity = "SelectedOpacity";                // text
inline constexpr const char* selectedCustomDimColor = "SelectedCustomDimColor";  // archived colour

inline constexpr const char* tintScreenEnabled = "TintScreenEnabled";              // Boolean
inline constexpr const char* selectedTintScreenColor = "SelectedTintScreenColor";  // text
inline constexpr const char* selectedIntensity = "SelectedIntensity";              // text
inline constexpr const char* selectedCustomTintScreenColor =
    "SelectedCustomTintScreenColor";  // archived colour

// Boolean; written at each switch and never read: hidden icons do not survive a restart.
inline constexpr const char* hideDesktopIconsEnabled = "HideDesktopIconsEnabled";

inline constexpr const char* highlightMouseClicksEnabled = "HighlightMouseClicksEnabled";  // Boolean
inline constexpr const char* selectedHighlightColor = "SelectedHighlightColor";            // text
inline constexpr const char* selectedSize = "SelectedSize";                                // text

inline constexpr const char* preventSleepEnabled = "PreventSleepEnabled";  // Boolean
inline constexpr const char* selectedDuration = "SelectedDuration";        // text

inline constexpr const char* clipboardEnabled = "ClipboardEnabled";  // Boolean
inline constexpr const char* clipboardContent = "ClipboardContent";  // encoded list of texts, newest first
inline constexpr const char* clipboardBlacklistedApplications =
    "ClipboardBlacklistedApplications";  // encoded list of file URLs

inline constexpr const char* autoClearClipboardFormattingEnabled =
    "AutoClearClipboardFormattingEnabled";  // Boolean

inline constexpr const char* reviewPromptNextDate = "ReviewPromptNextDate";        // date
inline constexpr const char* uninstalledApplications = "UninstalledApplications";  // encoded list of records
inline constexpr const char* userApprovedFolderBookmarks =
    "HTUserApprovedFolderBookmarks";  // encoded list of bookmarks

}  // namespace harbor::settings_keys
