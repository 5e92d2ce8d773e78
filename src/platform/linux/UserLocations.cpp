#include "platform/linux/UserLocations.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <utility>

#include "base/FileUrl.h"
#include "base/FolderPath.h"
#include "base/PathBelow.h"

namespace harbor {
namespace {

struct NamedBase {
  PlaceBase base;
  const char* variable;
  const char* usual;
  const char* inFlatpak;
  const char* inSnap;
};
constexpr NamedBase kNamedBases[] = {
    {PlaceBase::config, "XDG_CONFIG_HOME", ".config", "config", ".config"},
    {PlaceBase::cache, "XDG_CACHE_HOME", ".cache", "cache", ".cache"},
    {PlaceBase::data, "XDG_DATA_HOME", ".local/share", "data", ".local/share"},
    {PlaceBase::state, "XDG_STATE_HOME", ".local/state", ".local/state", ".local/state"}};

// In the home folder: where programs keep what is theirs and the user's, besides the folders that the
// environment names.
constexpr const char* kFoldersWithData[] = {
    ".local",     ".local/bin", ".local/lib",      ".var",     ".var/app", "snap",         ".snap",
    ".ssh",       ".gnupg",     ".password-store", ".mozilla", ".pki",     ".thunderbird", ".icedove",
    ".evolution", ".kde",       ".kde4",           ".purple",  "Mail",     "Maildir",      ".claws-mail",
    "Library",    "bin",        "Applications",    "Desktop",  "Music",    "Documents",    "Pictures",
    "Videos",     "Public",     "Templates"};
// Of these, where one folder of each program lies beside the other.
constexpr const char* kFoldersOfPrograms[] = {".local/bin", ".local/lib",  ".mozilla",   ".thunderbird",
                                              ".icedove",   ".claws-mail", ".evolution", ".kde",
                                              ".kde4",      ".purple"};
// No cache lies in these, by any name.
constexpr const char* kFoldersWithSecrets[] = {".ssh", ".gnupg", ".pki", ".password-store"};

const NamedBase* namedBase(PlaceBase base) {
  const auto* const row = std::find_if(std::begin(kNamedBases), std::end(kNamedBases),
                                       [base](const NamedBase& each) { return each.base == base; });
  return row == std::end(kNamedBases) ? nullptr : row;
}

// What is taken of these is whatever they hold, not what goes by a certain name.
bool isTakenWhole(PlaceBase base) {
  return base == PlaceBase::cache || base == PlaceBase::state || base == PlaceBase::downloads;
}

// With every link resolved, whoever made it; empty when it does not exist.
std::string canonical(const std::string& path) {
  char buffer[PATH_MAX];
  return ::realpath(path.c_str(), buffer) ? buffer : std::string();
}

// Whether the path is the sandbox's own folder for that base, or lies in it.
bool isBaseOfSandbox(const std::string& path, const std::string& sandbox, PlaceBase base) {
  const NamedBase* const row = namedBase(base);
  if (!row || path.size() <= sandbox.size()) return false;
  const std::string_view rest = std::string_view(path).substr(sandbox.size() + 1);
  const std::size_t slash = rest.find('/');
  return isAtOrBelow(rest, row->inFlatpak) ||
         (slash != std::string_view::npos && isAtOrBelow(rest.substr(slash + 1), row->inSnap));
}

std::optional<std::string> variableOfProcess(const char* name) {
  const char* const value = std::getenv(name);
  return value ? std::optional<std::string>(value) : std::nullopt;
}

}  // namespace

std::string baseInFlatpak(PlaceBase base) {
  const NamedBase* const row = namedBase(base);
  return row ? row->inFlatpak : "";
}

std::string baseInSnap(PlaceBase base) {
  const NamedBase* const row = namedBase(base);
  return row ? row->inSnap : "";
}

UserLocations::UserLocations(std::string homeFolder, UserDirectories directories, Environment environment)
    : homeFolder_(std::move(homeFolder)),
      directories_(std::move(directories)),
      environment_(environment ? std::move(environment) : variableOfProcess),
      sandboxes_(homeFolder_),
      realHome_(canonical(homeFolder_)),
      own_(ownFolders()) {}

UserLocations UserLocations::read(const std::string& homeFolder, const Environment& environment) {
  const UserLocations usual(homeFolder, UserDirectories::fromText("", homeFolder), environment);
  const std::string config = usual.configHome().value_or(homeFolder + "/.config");
  return {homeFolder, UserDirectories::read(config, homeFolder), environment};
}

std::optional<std::string> UserLocations::resolved(const std::string& path) const {
  if (!path.starts_with('/')) return std::nullopt;
  const auto folder = FolderPath::resolve(path, sandboxes_.untrusted());
  return folder ? std::optional(pathOfComponents(folder->components)) : std::nullopt;
}

std::optional<std::string> UserLocations::counted(const std::string& path) const {
  const auto place = realHome_.empty() ? std::nullopt : resolved(path);
  if (!place || !isBelow(*place, realHome_)) return std::nullopt;
  // The usual names count beside the configured ones: a file that lies about them must not unlock them.
  for (const std::string& own : {directories_.folder("DESKTOP"), directories_.folder("DOCUMENTS"),
                                 homeFolder_ + "/Desktop", homeFolder_ + "/Documents"}) {
    if (canonical(own) == *place) return std::nullopt;
  }
  return FileUrl::fromPath(path).path;
}

std::string UserLocations::named(PlaceBase base) const {
  if (base == PlaceBase::home) return homeFolder_;
  if (base == PlaceBase::downloads) return directories_.folder("DOWNLOAD");
  const NamedBase* const row = namedBase(base);
  if (!row) return {};
  const auto set = environment_(row->variable);
  return set && !set->empty() ? *set : homeFolder_ + "/" + row->usual;
}

std::optional<std::string> UserLocations::folder(PlaceBase base) const {
  if (base == PlaceBase::home) return homeFolder_.empty() ? std::nullopt : std::optional(homeFolder_);
  auto found = counted(named(base));
  if (found && !mayBeBase(resolved(*found).value_or(""), base)) found.reset();
  return found;
}

std::vector<UserLocations::OwnFolder> UserLocations::ownFolders() const {
  std::vector<OwnFolder> own;
  const auto append = [&own](const std::string& path, PlaceBase use, Owner owner = Owner::programs) {
    if (std::string real = canonical(path); !real.empty()) own.push_back({std::move(real), use, owner});
  };
  if (homeFolder_.empty()) return own;
  for (const NamedBase& row : kNamedBases) {
    append(homeFolder_ + "/" + row.usual, row.base);
    append(named(row.base), row.base);  // believed or not
  }
  append(homeFolder_ + "/Downloads", PlaceBase::downloads, Owner::user);
  for (const char* folder : kFoldersWithData)
    append(homeFolder_ + "/" + folder, PlaceBase::home);
  // A configuration folder that is not believed may still say which folders are the user's.
  const auto unbelieved = UserDirectories::read(named(PlaceBase::config), homeFolder_);
  for (const UserDirectories* directories : {&directories_, &unbelieved}) {
    for (const auto& [purpose, folder] : directories->folders())
      append(folder, purpose == "DOWNLOAD" ? PlaceBase::downloads : PlaceBase::home, Owner::user);
  }
  return own;
}

bool UserLocations::isOrHoldsOwn(const std::string& path, PlaceBase except) const {
  // Of a cache nothing is missed, unless it goes as something else.
  const bool countsCaches = except == PlaceBase::state || except == PlaceBase::downloads;
  return std::any_of(own_.begin(), own_.end(), [&](const OwnFolder& each) {
    const bool counts = each.use == PlaceBase::cache ? countsCaches : each.use != except;
    if (!counts && each.use != PlaceBase::home) return false;
    // Among settings and data the user may well keep folders: only what goes by its name is taken there.
    const bool isNamedIn =
        each.owner == Owner::user && (except == PlaceBase::config || except == PlaceBase::data);
    return isNamedIn ? each.path == path : isAtOrBelow(each.path, path);
  });
}

bool UserLocations::liesInOneOf(const std::string& path, std::span<const char* const> folders) const {
  return std::any_of(folders.begin(), folders.end(), [&](const char* folder) {
    const std::string real = canonical(homeFolder_ + "/" + folder);
    return !real.empty() && isAtOrBelow(path, real);
  });
}

bool UserLocations::mayBeBase(const std::string& path, PlaceBase base) const {
  if (isOrHoldsOwn(path, base) || liesInOneOf(path, kFoldersWithSecrets)) return false;
  if (const auto sandbox = sandboxes_.holding(path)) return isBaseOfSandbox(path, *sandbox, base);
  if (!isTakenWhole(base)) return true;
  return !liesInOneOf(path, kFoldersOfPrograms) &&
         std::none_of(own_.begin(), own_.end(), [&path](const OwnFolder& each) {
           return (each.use == PlaceBase::config || each.use == PlaceBase::data) &&
                  isAtOrBelow(path, each.path);
         });
}

bool UserLocations::mayBeCleaned(const std::string& path, PlaceBase base) const {
  if (realHome_.empty() || realHome_ == "/" || !isBelow(path, realHome_)) return false;
  const bool isOwnPlace = base == PlaceBase::state || base == PlaceBase::downloads;
  return !isOrHoldsOwn(path, isOwnPlace ? base : PlaceBase::home) && !liesInOneOf(path, kFoldersWithSecrets);
}

}  // namespace harbor
