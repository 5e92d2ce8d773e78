#include "platform/linux/DesktopTraits.h"

#include <gtest/gtest.h>

namespace harbor {
namespace {

TEST(DesktopTraits, AreThoseOfTheWindowManager) {
  struct Row {
    const char* name;
    VeilStacking veil;
    CoverStacking cover;
  };
  const Row rows[] = {
      {"Openbox", VeilStacking::exact, CoverStacking::unmanaged},
      {"Xfwm4", VeilStacking::exact, CoverStacking::managedBelow},
      {"Metacity", VeilStacking::holes, CoverStacking::managedDock},
      {"Metacity (Marco)", VeilStacking::holes, CoverStacking::managedDock},
      {"Mutter", VeilStacking::holes, CoverStacking::managedDock},
      {"Mutter (Muffin)", VeilStacking::holes, CoverStacking::managedDock},
      {"GNOME Shell", VeilStacking::holes, CoverStacking::managedDock},
      {"KWin", VeilStacking::holes, CoverStacking::managedUntilShown},
      {"i3", VeilStacking::holes, CoverStacking::managedUntilShown},
      {"", VeilStacking::exact, CoverStacking::unmanaged},
  };
  for (const auto& row : rows)
    EXPECT_EQ(desktopTraitsFor(row.name), (DesktopTraits{row.veil, row.cover})) << row.name;
}

}  // namespace
}  // namespace harbor
