// Which programs use the data that a target of the privacy cleanup erases, by the identifiers of their
// desktop entries: one row a program, whatever package it came in.
#pragma once

#include <array>
#include <string_view>

#include "platform/CleanupPlaces.h"

namespace harbor {

struct TargetProgram {
  PrivacyTarget target;
  // Debian's first, then Flatpak's and Snap's; unused places are empty.
  std::array<std::string_view, 5> desktopIdentifiers;
};

// The browsers are in the table of the Mac's applications: see MacApplications.h.
inline constexpr TargetProgram kTargetPrograms[] = {
    // They write their lists of recent documents, and the settings beside them, when they end.
    {PrivacyTarget::preview, {"org.gnome.Evince", "evince", "evince_evince"}},
    {PrivacyTarget::preview, {"org.gnome.Papers", "papers"}},
    {PrivacyTarget::preview, {"atril"}},
    {PrivacyTarget::preview, {"xreader"}},
    {PrivacyTarget::preview, {"org.kde.okular", "okular_okular", "org.kde.mobile.okular"}},
    {PrivacyTarget::preview, {"qpdfview", "qpdfview_qpdfview"}},
    {PrivacyTarget::preview, {"org.gnome.eog", "eog", "eog_eog"}},
    {PrivacyTarget::preview, {"org.gnome.Loupe"}},
    {PrivacyTarget::preview, {"eom"}},
    {PrivacyTarget::preview, {"xviewer"}},
    {PrivacyTarget::preview, {"org.xfce.ristretto", "ristretto"}},
    {PrivacyTarget::preview, {"org.kde.gwenview", "gwenview_gwenview"}},
    // They write where a film was left, and what was played, when they end.
    {PrivacyTarget::quickTimePlayer, {"mpv", "io.mpv.Mpv", "mpv_mpv"}},
    {PrivacyTarget::quickTimePlayer, {"vlc", "org.videolan.VLC", "vlc_vlc"}},
    {PrivacyTarget::quickTimePlayer, {"org.gnome.Totem", "totem", "totem_totem"}},
    {PrivacyTarget::quickTimePlayer, {"io.github.celluloid_player.Celluloid", "celluloid_celluloid"}},
    {PrivacyTarget::quickTimePlayer, {"smplayer", "info.smplayer.SMPlayer", "smplayer_smplayer"}},
};

// The bundle identifier in the Mac's table of the browser that a target's data belongs to.
struct TargetBrowser {
  PrivacyTarget target;
  std::string_view bundleIdentifier;
};

inline constexpr TargetBrowser kTargetBrowsers[] = {
    {PrivacyTarget::googleChrome, "com.google.Chrome"},
    {PrivacyTarget::firefox, "org.mozilla.firefox"},
};

}  // namespace harbor
