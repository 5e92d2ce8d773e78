#include "platform/linux/ApplicationNames.h"

#include <algorithm>
#include <iterator>

#include "base/FileUrl.h"
#include "platform/linux/ExecLine.h"

namespace harbor {
namespace {

// Words that are no application's own, lower-cased and sorted. The first kind are folders of the desktop and
// of the system's tools; the second are what programs and folders of any application are called.
constexpr std::string_view kCommonWords[] = {
    "app",         "appimage",  "application", "applications", "archive",  "audio",      "autostart",
    "backgrounds", "backup",    "backups",     "bash",         "bin",      "bookmarks",  "books",
    "browser",     "cache",     "calculator",  "calendar",     "camera",   "characters", "client",
    "clocks",      "common",    "config",      "console",      "contacts", "containers", "core",
    "crashes",     "data",      "dbus-1",      "dconf",        "default",  "desktop",    "devices",
    "disks",       "display",   "documents",   "downloads",    "editor",   "extensions", "files",
    "flatpak",     "folder",    "folders",     "fontconfig",   "fonts",    "games",      "git",
    "gnome",       "gnupg",     "gpg",         "gui",          "help",     "history",    "home",
    "icons",       "images",    "index",       "install",      "kde",      "keyrings",   "launch",
    "launcher",    "lib",       "library",     "local",        "locale",   "log",        "login",
    "logs",        "mail",      "main",        "man",          "maps",     "media",      "menus",
    "messages",    "mime",      "mozilla",     "music",        "network",  "news",       "notes",
    "passwords",   "photos",    "pictures",    "pixmaps",      "pki",      "player",     "plugins",
    "preferences", "profile",   "profiles",    "program",      "public",   "pulse",      "recent",
    "run",         "scripts",   "search",      "server",       "session",  "sessions",   "settings",
    "setup",       "share",     "shell",       "skins",        "snap",     "software",   "sounds",
    "ssh",         "start",     "state",       "steam-game",   "storage",  "system",     "systemd",
    "tasks",       "templates", "terminal",    "test",         "themes",   "thumbnails", "tmp",
    "tools",       "trash",     "update",      "user",         "users",    "utilities",  "var",
    "video",       "videos",    "viewer",      "wallpapers",   "weather",  "web",        "wrapper",
    "xdg-open",    "zoneinfo",
};
static_assert(std::is_sorted(std::begin(kCommonWords), std::end(kCommonWords)));

// What distributors and wrappers put behind a program's name, which keeps its files under the bare name. A
// toolkit ("-gtk") is not among them: the bare name may be another program's, whose front end this one is.
constexpr std::string_view kSuffixes[] = {"-bin", "-esr", "-stable", "-wrapper"};

// Extensions of what an interpreter or loader runs.
constexpr std::string_view kScriptExtensions[] = {"AppImage", "appimage", "exe", "jar", "js",
                                                  "pl",       "py",       "rb",  "sh"};

bool isLetterOrDigit(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
         (character >= '0' && character <= '9') || (static_cast<unsigned char>(character) & 0x80) != 0;
}

// Whether it can be the name of a file at all.
bool isFileName(std::string_view name) {
  return !name.empty() && name.front() != '.' && name.find('/') == std::string_view::npos &&
         name.find('\0') == std::string_view::npos;
}

// "gimp" for "gimp-2.10".
std::string withoutVersion(const std::string& program) {
  const std::size_t end = program.find_last_not_of("0123456789.");
  return end != std::string::npos && end > 0 && end + 1 < program.size() && program[end] == '-'
             ? program.substr(0, end)
             : program;
}

class Collector {
 public:
  explicit Collector(const Text& text) : text_(text) {}

  void add(const std::string& name) {
    if (isFileName(name) && !isCommonWord(name, text_) && !isLauncherOrInterpreter(name) &&
        std::find(names.begin(), names.end(), name) == names.end()) {
      names.push_back(name);
    }
  }

  void addProgram(const std::string& program) {
    const auto add = [this](const std::string& name) {
      programs_.push_back(name);
      this->add(name);
    };
    const std::string file = lastPathComponent(program);
    add(file);
    const std::string extension = pathExtension(file);
    const std::string stem = std::find(std::begin(kScriptExtensions), std::end(kScriptExtensions),
                                       extension) != std::end(kScriptExtensions)
                                 ? stemOfPath(file)
                                 : file;
    add(stem);
    for (const std::string_view suffix : kSuffixes) {
      if (stem.ends_with(suffix)) add(stem.substr(0, stem.size() - suffix.size()));
    }
    add(withoutVersion(stem));
  }

  // Whether a program's name is the same word as one of these.
  bool isProgramAmong(const std::vector<std::string>& words) const {
    return std::any_of(words.begin(), words.end(), [this](const std::string& word) {
      return std::any_of(programs_.begin(), programs_.end(), [&](const std::string& program) {
        return text_.lowercased(program) == text_.lowercased(word);
      });
    });
  }

  // A title or window class counts when a name that is certain is the same word or begins with it.
  void addConfirmed(const std::string& title) {
    std::string hyphened = title;
    std::replace(hyphened.begin(), hyphened.end(), ' ', '-');
    std::string joined = title;
    std::erase(joined, ' ');
    const std::size_t certain = names.size();
    for (const std::string& form : {title, hyphened, joined}) {
      const std::string wanted = text_.lowercased(form);
      const bool isConfirmed = std::any_of(
          names.begin(), names.begin() + static_cast<std::ptrdiff_t>(certain), [&](const std::string& name) {
            const std::string lowered = text_.lowercased(name);
            return lowered.starts_with(wanted) &&
                   (lowered.size() == wanted.size() || !isLetterOrDigit(lowered[wanted.size()]));
          });
      if (isConfirmed && !wanted.empty()) add(form);
    }
  }

  std::vector<std::string> names;

 private:
  const Text& text_;
  std::vector<std::string> programs_;  // all forms of them, also those that are nobody's names
};

std::string lastIdentifierComponent(const std::string& identifier) {
  return identifier.substr(identifier.rfind('.') + 1);
}

// The sandbox that the entry says, or else that its command line is about.
void findSandbox(const DesktopEntry& entry, const std::vector<std::string>& words,
                 const std::optional<Program>& program, ApplicationNames& found) {
  const bool isIdentifier = program && program->kind == Program::Kind::applicationId;
  const auto runs = [&](std::string_view launcher) {
    return isIdentifier && std::any_of(words.begin(), words.end(), [&](const std::string& word) {
             return lastPathComponent(word) == launcher;
           });
  };
  if (isFileName(entry.flatpak)) {
    found.flatpak = entry.flatpak;
  } else if (runs("flatpak") && isFileName(program->name)) {
    found.flatpak = program->name;
  } else if (isFileName(entry.snap)) {
    found.snap = entry.snap;
  } else if (program && (runs("snap") || program->name.starts_with("/snap/bin/"))) {
    const std::string command = lastPathComponent(program->name);
    found.snap = command.substr(0, command.find('.'));
    if (!isFileName(*found.snap)) found.snap.reset();
  }
}

}  // namespace

bool isCommonWord(std::string_view name, const Text& text) {
  return std::binary_search(std::begin(kCommonWords), std::end(kCommonWords),
                            std::string_view(text.lowercased(name)));
}

std::optional<ApplicationNames> applicationNames(const DesktopEntries& entries, const std::string& path,
                                                 const Text& text) {
  const auto entry = entries.entryAt(path);
  if (!entry) return std::nullopt;
  const std::string identifier = entries.identifierOf(path);
  const auto words = splitCommandLine(entry->exec);
  const auto program = words ? programBehind(*words) : std::nullopt;

  ApplicationNames found;
  findSandbox(*entry, words.value_or(std::vector<std::string>{}), program, found);
  Collector collector(text);
  if (found.flatpak || found.snap) {
    // Outside the sandbox the program's plain names are those of another installation of the same program.
    if (found.flatpak) collector.add(*found.flatpak);
    if (identifier.find('.') != std::string::npos) collector.add(identifier);
    found.names = std::move(collector.names);
    return found;
  }

  collector.add(identifier);
  if (program && program->kind == Program::Kind::executable) {
    // A page or game that another application shows has that application's program, and none of its files.
    const std::string file = lastPathComponent(program->name);
    const auto owner = entries.withIdentifier(file);
    if (!owner || *owner == path || file == identifier || !entries.isOffered(*owner)) {
      collector.addProgram(program->name);
      found.program = entries.environment().findProgram(program->name);
      if (!entry->tryExec.empty()) collector.addProgram(entry->tryExec);
    }
  }
  for (const std::string& title :
       {entry->untranslatedName, entry->name, entry->startupWmClass, lastIdentifierComponent(identifier)}) {
    collector.addConfirmed(title);
  }
  found.isProgramNamedLikeIt =
      collector.isProgramAmong({identifier, lastIdentifierComponent(identifier), entry->untranslatedName});
  found.names = std::move(collector.names);
  return found;
}

}  // namespace harbor
