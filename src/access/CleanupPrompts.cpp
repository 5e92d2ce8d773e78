#include "access/CleanupPrompts.h"

namespace harbor {
namespace {

constexpr const char* kEnding =
    "\" in this panel and click the \"Open\" button.\n(The button will be enabled when you have selected the "
    "correct folder.)";

TWDiskAccess::Texts textsFor(const std::string& message) {
  return {"Select Folder", message + kEnding, "Cleanup failed",
          "Please grant access for the cleanup to succeed", "OK"};
}

}  // namespace

TWDiskAccess::Texts cleanupTextsForHomeFolder(const std::string& home) {
  return textsFor("Please choose your home folder \"" + lastPathComponent(home));
}

TWDiskAccess::Texts cleanupTextsForVolume(const FileUrl& volume) {
  return textsFor("Please choose the volume labeled \"" + lastPathComponent(volume.path));
}

}  // namespace harbor
