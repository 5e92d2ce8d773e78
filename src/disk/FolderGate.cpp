#include "disk/FolderGate.h"

#include <fcntl.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "base/FolderPath.h"

namespace harbor {
namespace {

// The folders that hold the users' home folders by custom, and the superuser's own, whatever the user
// database says.
constexpr std::array<std::string_view, 3> kFoldersOfHomes{"home", "Users", "root"};

bool isBelow(const std::vector<std::string>& path, const std::vector<std::string>& folder) {
  return path.size() > folder.size() && isAtOrBelow(path, folder);
}

bool isBelowOneOf(const std::vector<std::string>& path,
                  const std::vector<std::vector<std::string>>& folders) {
  return std::any_of(folders.begin(), folders.end(),
                     [&](const auto& folder) { return isBelow(path, folder); });
}

// The home folder's components as they are written and as they really are; empty when it is no folder that a
// user can have.
std::vector<std::vector<std::string>> namesOfHome(const std::string& home) {
  auto written = pathComponents(home);
  if (!home.starts_with('/') || written.empty() || home.find('\0') != std::string::npos) return {};
  auto resolved = FolderPath::resolve(home);
  if (!resolved) return {std::move(written)};
  return {std::move(written), std::move(resolved->components)};
}

// Whether the open folder lies below the volume's root and on the same file system.
bool liesOnVolume(const std::string& volume, const std::vector<std::string>& place, int folder) {
  const auto root = FolderPath::withoutLinks(volume);
  const auto facts = factsOfDescriptor(folder);
  const auto rootFacts = root ? factsOfDescriptor(root->folder.get()) : std::nullopt;
  return facts && rootFacts && isBelow(place, root->components) && !facts->isMountRoot &&
         facts->device == rootFacts->device;
}

}  // namespace

std::optional<RemovalRefusal> FolderGate::refusalForText(const std::string& path) const {
  if (path.empty()) return RemovalRefusal::emptyPath;
  if (path.find('\0') != std::string::npos) return RemovalRefusal::zeroByte;
  if (path.front() != '/') return RemovalRefusal::relativePath;
  const auto components = pathComponents(path);
  if (std::find(components.begin(), components.end(), "..") != components.end())
    return RemovalRefusal::parentReference;
  return refusalForPlace(components);
}

std::optional<RemovalRefusal> FolderGate::refusalForPlace(const std::vector<std::string>& place) const {
  if (place.size() <= 1) return RemovalRefusal::rootOrDirectChild;

  const auto homes = namesOfHome(home_());
  if (homes.empty()) return RemovalRefusal::noHomeFolder;
  for (const auto& home : homes) {
    if (place == home || isBelow(home, place)) return RemovalRefusal::homeOrAbove;
  }
  if (isBelowOneOf(place, homes)) return std::nullopt;

  // What lies beside the own home folder is somebody else's.
  for (auto beside : homes) {
    beside.pop_back();
    if (!beside.empty() && isBelow(place, beside)) return RemovalRefusal::foreignHome;
  }
  for (const std::string_view custom : kFoldersOfHomes) {
    if (place.front() == custom) return RemovalRefusal::foreignHome;
  }
  return std::nullopt;
}

std::optional<RemovalRefusal> FolderGate::refusalForWay(const std::vector<std::string>& path,
                                                        const std::vector<std::string>& place) const {
  if (const auto refusal = refusalForPlace(place)) return refusal;
  const auto homes = namesOfHome(home_());
  // The trash of a volume that somebody hands over may be a link to whatever he likes.
  if (isBelowOneOf(place, homes) && !isBelowOneOf(path, homes)) return RemovalRefusal::leadsIntoHome;
  return std::nullopt;
}

bool FolderGate::isHomeOrAbove(const ItemFacts& folder) const {
  auto home = FolderPath::resolve(home_());
  // Without descriptors nobody can tell.
  if (!home && (errno == EMFILE || errno == ENFILE)) return true;
  while (home && home->folder) {
    const auto facts = factsOfDescriptor(home->folder.get());
    if (facts && facts->isSameItemAs(folder)) return true;
    if (home->components.empty()) break;
    home->components.pop_back();
    home = FolderPath::resolve(pathOfComponents(home->components));
  }
  return false;
}

std::optional<ItemFacts> FolderGate::homeFacts() const {
  const auto place = FolderPath::resolve(home_());
  return place ? factsOfDescriptor(place->folder.get()) : std::nullopt;
}

FolderGate::Opened FolderGate::openAndJudge(const std::string& path, const FolderWay& way,
                                            const std::string& name) const {
  Opened opened;
  if ((opened.refusal = refusalForText(way.path))) return opened;
  auto place = way.links == FolderWay::Links::refused
                   ? FolderPath::withoutLinks(path)
                   : FolderPath::resolve(path, sandboxes_ ? sandboxes_() : std::vector<std::string>{});
  if (!place) {
    opened.error = errno;
    return opened;
  }
  auto components = place->components;
  if (!name.empty()) components.push_back(name);
  if ((opened.refusal = refusalForWay(pathComponents(way.path), components))) return opened;
  if (!way.volume.empty() && !liesOnVolume(way.volume, components, place->folder.get())) {
    opened.refusal = RemovalRefusal::outsideVolume;
    return opened;
  }
  opened.folder = std::move(place->folder);
  return opened;
}

FolderGate::Opened FolderGate::open(const FolderWay& way) const {
  Opened opened = openAndJudge(way.path, way, {});
  if (!opened.folder) return opened;
  opened.folder = FileDescriptor(::openat(opened.folder.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  const auto facts = opened.folder ? factsOfDescriptor(opened.folder.get()) : std::nullopt;
  if (!facts) return {{}, {}, errno};
  if (isHomeOrAbove(*facts)) return {{}, RemovalRefusal::homeOrAbove, 0};
  return opened;
}

FolderGate::Opened FolderGate::openParent(const FolderWay& way) const {
  auto components = pathComponents(way.path);
  if (components.empty()) return {{}, refusalForText(way.path), 0};
  const std::string name = std::move(components.back());
  components.pop_back();
  return openAndJudge(pathOfComponents(components), way, name);
}

}  // namespace harbor
