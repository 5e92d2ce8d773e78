#include "platform/linux/CommandLine.h"

#include <QCoreApplication>
#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "base/HomeFolder.h"
#include "disk/CleanupReport.h"
#include "platform/icu/IcuText.h"
#include "platform/linux/DesktopEntries.h"
#include "platform/linux/LinuxApplicationBundles.h"
#include "platform/linux/LinuxCleanupPlaces.h"
#include "platform/linux/LinuxFileManager.h"
#include "platform/linux/LinuxRunLoop.h"
#include "platform/linux/UserLocations.h"
#include "platform/plist/LibplistCoder.h"
#include "uninstaller/RelatedFileReport.h"

namespace harbor {
namespace {

constexpr const char* kUsage =
    "Usage: harbor-tray [--help | --version | --measure [--json] | --related PATH [--json]]\n"
    "\n"
    "Harbor Tray lives in the tray of the panel: click its icon for the menu.\n"
    "Where it runs already, another start opens its menu and ends.\n"
    "\n"
    "  -h, --help      show this text\n"
    "  -v, --version   show the version\n"
    "  --measure       show what each cleanup of \"Free Disk Space\" would remove; changes nothing\n"
    "  --related PATH  show the files that belong to an application, an \".app\" folder or a desktop entry, "
    "as the\n"
    "                  uninstaller finds them; changes nothing\n"
    "  --json          behind either: the same for another program to read\n";

// The status of a command that has printed its answer.
int print(const std::string& answer) {
  if (std::fputs(answer.c_str(), stdout) >= 0 && std::fflush(stdout) == 0) return 0;
  std::perror("harbor-tray");
  return 1;
}

// Needs no display.
int measureCleanups(ReportFormat format, int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  LinuxRunLoop runLoop;
  const std::string home = homeFolderOfUserDatabase();
  if (home.empty()) {
    std::fputs("harbor-tray: the user database gives no home folder\n", stderr);
    return 1;
  }
  const LinuxFileManager fileManager(XdgEnvironment::fromProcess(), home, runLoop);
  return print(
      cleanupReport(home, externalVolumesOf(fileManager), LinuxCleanupPlaces(home, fileManager), format));
}

// The path without "." and ".." in it, symbolic links kept where that leads to the same item.
std::string absolutePath(const char* given) {
  std::error_code error;
  const auto absolute = std::filesystem::absolute(given, error).lexically_normal();
  if (error || std::filesystem::equivalent(given, absolute, error))
    return FileUrl::fromPath(absolute.string()).path;
  return std::filesystem::canonical(given, error).string();
}

// Needs no display.
int listRelatedFiles(const char* given, ReportFormat format) {
  const std::string path = absolutePath(given);
  const DesktopEntries entries(XdgEnvironment::fromProcess());
  const IcuText text;
  const LinuxApplicationBundles bundles(entries, text,
                                        [] { return UserLocations::read(homeFolderOfUserDatabase()); });
  if (!hasRelatedFiles(path, bundles)) {
    std::fprintf(stderr, "harbor-tray: there is no \".app\" folder or desktop entry at %s\n",
                 quotedForJson(given).c_str());
    return 1;
  }
  const RelatedFileSearch search{text, homeFolderOfUserDatabase(), {}, {}};
  BundleInformation information = bundleInformationOf(path, bundles, LibplistCoder());
  information.relatedPlaces = bundles.relatedPlaces(path);
  return print(relatedFileReport(search, path, information, format));
}

int refuse(std::string_view argument) {
  std::fprintf(stderr, "harbor-tray: unknown argument \"%s\"; see harbor-tray --help\n", argument.data());
  return 2;
}

}  // namespace

std::optional<int> answerCommandLine(int argc, char** argv) {
  const std::vector<std::string_view> arguments(argv + 1, argv + argc);
  if (arguments.empty()) return std::nullopt;
  const std::string_view command = arguments[0];
  if (command == "--help" || command == "-h") return print(kUsage);
  if (command == "--version" || command == "-v") return print("Harbor Tray " HARBOR_VERSION "\n");
  const bool isRelated = command == "--related";
  if (!isRelated && command != "--measure") return refuse(command);

  std::size_t end = isRelated ? 2 : 1;
  if (arguments.size() < end) {
    std::fputs("harbor-tray: --related needs the path of an application; see harbor-tray --help\n", stderr);
    return 2;
  }
  const bool wantsJson = arguments.size() > end && arguments[end] == "--json";
  if (wantsJson) ++end;
  if (arguments.size() > end) return refuse(arguments[end]);
  const ReportFormat format = wantsJson ? ReportFormat::json : ReportFormat::table;
  return isRelated ? listRelatedFiles(argv[2], format) : measureCleanups(format, argc, argv);
}

}  // namespace harbor
