#include "platform/linux/ProcessInformation.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <cstdlib>
#include <memory>

#include "base/FileUrl.h"
#include "platform/linux/ExecLine.h"
#include "platform/linux/KeyFile.h"

namespace harbor {
namespace {

constexpr std::size_t kMaximumBytes = 256 << 10;

std::string procPath(std::int32_t processIdentifier, std::string_view name) {
  return "/proc/" + std::to_string(processIdentifier) + "/" + std::string(name);
}

std::string contentsOf(const std::string& path) {
  std::string bytes;
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) return bytes;
  char buffer[4096];
  ssize_t count = 0;
  while (bytes.size() < kMaximumBytes && (count = ::read(descriptor, buffer, sizeof buffer)) > 0)
    bytes.append(buffer, static_cast<std::size_t>(count));
  ::close(descriptor);
  return bytes;
}

std::vector<std::string> splitAtZeros(const std::string& bytes) {
  std::vector<std::string> parts;
  std::size_t start = 0;
  while (start < bytes.size()) {
    const std::size_t end = std::min(bytes.find('\0', start), bytes.size());
    parts.push_back(bytes.substr(start, end - start));
    start = end + 1;
  }
  return parts;
}

}  // namespace

std::optional<ProcessInformation> ProcessInformation::of(std::int32_t processIdentifier) {
  if (processIdentifier <= 0) return std::nullopt;
  struct stat status;
  if (stat(procPath(processIdentifier, "").c_str(), &status) != 0 || status.st_uid != getuid())
    return std::nullopt;
  char target[PATH_MAX];
  const ssize_t length = readlink(procPath(processIdentifier, "exe").c_str(), target, sizeof target);
  if (length <= 0) return std::nullopt;
  ProcessInformation process;
  process.processIdentifier = processIdentifier;
  process.executable.assign(target, static_cast<std::size_t>(length));
  constexpr std::string_view kDeleted = " (deleted)";
  if (process.executable.ends_with(kDeleted))
    process.executable.resize(process.executable.size() - kDeleted.size());
  process.arguments = splitAtZeros(contentsOf(procPath(processIdentifier, "cmdline")));
  return process;
}

std::vector<ProcessInformation> ProcessInformation::all() {
  struct CloseDirectory {
    void operator()(DIR* directory) const { closedir(directory); }
  };
  std::vector<ProcessInformation> processes;
  const std::unique_ptr<DIR, CloseDirectory> directory(opendir("/proc"));
  if (!directory) return processes;
  while (const dirent* entry = readdir(directory.get())) {
    if (entry->d_name[0] < '1' || entry->d_name[0] > '9') continue;
    if (auto process = of(static_cast<std::int32_t>(std::strtol(entry->d_name, nullptr, 10))))
      processes.push_back(std::move(*process));
  }
  return processes;
}

std::optional<std::string> ProcessInformation::environmentVariable(std::string_view name) const {
  for (const std::string& assignment : splitAtZeros(contentsOf(procPath(processIdentifier, "environ")))) {
    if (assignment.size() > name.size() && assignment.starts_with(name) && assignment[name.size()] == '=')
      return assignment.substr(name.size() + 1);
  }
  return std::nullopt;
}

std::optional<std::string> ProcessInformation::flatpakIdentifier() const {
  const auto information = KeyFile::read(procPath(processIdentifier, "root/.flatpak-info"));
  return information ? information->string("Application", "name") : std::nullopt;
}

std::optional<std::string> ProcessInformation::snapIdentifier() const {
  // A line of the control groups reads "…/snap.NAME.APP.<number>.scope".
  const std::string groups = contentsOf(procPath(processIdentifier, "cgroup"));
  const std::size_t start = groups.find("/snap.");
  if (start == std::string::npos) return std::nullopt;
  const std::string rest = groups.substr(start + 6, groups.find('\n', start) - start - 6);
  const std::size_t name = rest.find('.');
  if (name == std::string::npos) return std::nullopt;
  const std::size_t application = rest.find_first_of(".-", name + 1);
  return rest.substr(0, name) + "_" + rest.substr(name + 1, application - name - 1);
}

std::string ProcessInformation::program() const {
  if (!isLauncherOrInterpreter(lastPathComponent(executable))) return executable;
  const auto behind = programBehind(arguments);
  if (!behind || behind->kind != Program::Kind::executable || behind->name.find('/') == std::string::npos)
    return executable;
  if (behind->name.front() == '/') return behind->name;
  // A relative path counts from the folder that the process is in.
  char buffer[PATH_MAX];
  const std::string path = procPath(processIdentifier, "cwd/" + behind->name);
  return realpath(path.c_str(), buffer) ? std::string(buffer) : executable;
}

}  // namespace harbor
