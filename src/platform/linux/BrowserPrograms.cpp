#include "platform/linux/BrowserPrograms.h"

#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdlib>

#include "base/FileUrl.h"
#include "platform/linux/ExecLine.h"
#include "platform/linux/KeyFile.h"

namespace harbor {
namespace {

// Where nobody but the system's administrator installs programs.
constexpr std::string_view kSystemFolders[] = {"/usr/",  "/opt/", "/bin/", "/lib/",
                                               "/snap/", "/nix/", "/gnu/"};

std::string resolved(const std::string& path) {
  char buffer[PATH_MAX];
  return ::realpath(path.c_str(), buffer) ? buffer : path;
}

std::string folderOf(const std::string& path) {
  return path.substr(0, path.rfind('/') + 1);
}

bool isOfSystem(const std::string& path) {
  return std::any_of(std::begin(kSystemFolders), std::end(kSystemFolders),
                     [&path](std::string_view folder) { return path.starts_with(folder); });
}

template <typename Names>
bool isOneOf(std::string_view name, const Names& names) {
  return !name.empty() && std::find(names.begin(), names.end(), name) != names.end();
}

}  // namespace

bool isStartedBy(const std::string& executable, const std::string& program,
                 const MacApplication& application) {
  if (executable == program) return true;
  if (!isOneOf(lastPathComponent(executable), application.programs)) return false;
  return folderOf(executable) == folderOf(program) || (isOfSystem(executable) && isOfSystem(program));
}

std::vector<std::string> BrowserPrograms::programsOf(const MacApplication& application) const {
  std::vector<std::string> programs;
  for (const std::string& folder : environment_.applicationsFolders()) {
    for (const std::string_view identifier : application.desktopIdentifiers) {
      if (identifier.empty()) continue;
      const auto entry = KeyFile::read(folder + "/" + std::string(identifier) + ".desktop");
      const auto line = entry ? entry->string("Desktop Entry", "Exec") : std::nullopt;
      const auto words = line ? splitCommandLine(*line) : std::nullopt;
      const auto program = words ? programBehind(*words) : std::nullopt;
      if (!program || program->kind != Program::Kind::executable) continue;
      std::string path = environment_.findProgram(program->name);
      if (!path.empty()) programs.push_back(resolved(path));
    }
  }
  return programs;
}

bool BrowserPrograms::isInstalled(std::string_view bundleIdentifier) const {
  const MacApplication* const application = macApplicationWithIdentifier(bundleIdentifier);
  if (!application) return false;
  for (const std::string& folder : environment_.applicationsFolders()) {
    for (const std::string_view identifier : application->desktopIdentifiers) {
      if (!identifier.empty() &&
          ::access((folder + "/" + std::string(identifier) + ".desktop").c_str(), F_OK) == 0)
        return true;
    }
  }
  return false;
}

bool BrowserPrograms::isRunIn(const ProcessInformation& process, const MacApplication& application) const {
  if (const auto flatpak = process.flatpakIdentifier())
    return isOneOf(*flatpak, application.desktopIdentifiers);
  if (const auto snap = process.snapIdentifier()) return isOneOf(*snap, application.desktopIdentifiers);
  const auto programs = programsOf(application);
  return std::any_of(programs.begin(), programs.end(), [&](const std::string& program) {
    return isStartedBy(resolved(process.program()), program, application) ||
           isStartedBy(process.executable, program, application);
  });
}

}  // namespace harbor
