#include "platform/linux/ExecLine.h"

#include <algorithm>

#include "base/FileUrl.h"

namespace harbor {
namespace {

// How the program is found behind a launcher's own name.
enum class Rule {
  command,      // the first word that is neither an option nor an assignment starts the real command line
  shell,        // the same, or the command line behind -c
  interpreter,  // the first word that is no option is the script
  java,         // the archive behind -jar
  flatpak,      // the application id behind "run"
  identifier,   // the first word that is no option is an application id
  terminal,     // the command line behind -e, -x or --
};

struct Launcher {
  std::string_view name;
  Rule rule;
  std::string_view optionsWithValue = {};  // options, separated by blanks, whose value is the next word
};

constexpr Launcher kLaunchers[] = {
    {"env", Rule::command, "-u --unset -C --chdir"},
    {"nice", Rule::command, "-n --adjustment"},
    {"ionice", Rule::command, "-c --class -n --classdata"},
    {"nohup", Rule::command},
    {"setsid", Rule::command},
    {"exec", Rule::command, "-a"},
    {"dbus-launch", Rule::command},
    {"dbus-run-session", Rule::command, "--config-file --dbus-daemon"},
    {"pkexec", Rule::command, "--user"},
    {"sudo", Rule::command, "-u --user -g --group"},
    {"gksu", Rule::command, "-u --user"},
    {"gksudo", Rule::command, "-u --user"},
    {"kdesu", Rule::command, "-u"},
    {"kdesudo", Rule::command, "-u"},
    {"kstart", Rule::command, "--window --desktop"},
    {"kstart5", Rule::command, "--window --desktop"},
    {"optirun", Rule::command, "-b"},
    {"primusrun", Rule::command},
    {"prime-run", Rule::command},
    {"gamemoderun", Rule::command},
    {"mangohud", Rule::command},
    {"firejail", Rule::command},
    {"torsocks", Rule::command},
    {"systemd-run", Rule::command, "-p --property -u --unit --slice"},
    {"systemd-inhibit", Rule::command},
    {"sh", Rule::shell, "-o +o"},
    {"bash", Rule::shell, "-o +o -O +O --rcfile --init-file"},
    {"dash", Rule::shell, "-o +o"},
    {"zsh", Rule::shell, "-o +o"},
    {"ksh", Rule::shell, "-o +o"},
    {"fish", Rule::shell},
    {"python", Rule::interpreter, "-W -X"},
    {"perl", Rule::interpreter, "-I"},
    {"ruby", Rule::interpreter, "-I -r"},
    {"node", Rule::interpreter, "-r --require"},
    {"nodejs", Rule::interpreter, "-r --require"},
    {"gjs", Rule::interpreter, "-I --include-path"},
    {"gjs-console", Rule::interpreter, "-I --include-path"},
    {"mono", Rule::interpreter},
    {"wine", Rule::interpreter},
    {"wine64", Rule::interpreter},
    {"wine-stable", Rule::interpreter},
    {"java", Rule::java, "-cp -classpath --class-path -p --module-path"},
    {"flatpak", Rule::flatpak},
    {"snap", Rule::identifier},
    {"gtk-launch", Rule::identifier},
    {"x-terminal-emulator", Rule::terminal},
    {"xterm", Rule::terminal},
    {"gnome-terminal", Rule::terminal},
    {"konsole", Rule::terminal},
    {"xfce4-terminal", Rule::terminal},
    {"mate-terminal", Rule::terminal},
};

constexpr int kMaximumDepth = 8;

using Words = std::vector<std::string>;

// "python3.11" and "perl5.36" are python and perl.
const Launcher* launcherNamed(std::string_view name) {
  const auto find = [](std::string_view wanted) -> const Launcher* {
    for (const Launcher& launcher : kLaunchers) {
      if (launcher.name == wanted) return &launcher;
    }
    return nullptr;
  };
  if (const Launcher* exact = find(name)) return exact;
  const Launcher* stem = find(name.substr(0, name.find_last_not_of("0123456789.") + 1));
  return stem && (stem->rule == Rule::interpreter || stem->rule == Rule::java) ? stem : nullptr;
}

bool isOption(std::string_view word) {
  return word.size() > 1 && (word.front() == '-' || word.front() == '+');
}

bool isAssignment(std::string_view word) {
  const std::size_t equals = word.find('=');
  if (equals == std::string_view::npos || equals == 0) return false;
  return word.substr(0, equals).find_first_not_of(
             "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_") == std::string_view::npos;
}

bool takesValue(const Launcher& launcher, std::string_view option) {
  std::string_view rest = launcher.optionsWithValue;
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find(' '), rest.size());
    if (rest.substr(0, end) == option) return true;
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return false;
}

// The index of the first word behind the launcher and its options; the number of words when there is none.
std::size_t skipOptions(const Launcher& launcher, const Words& words, std::size_t index) {
  while (index < words.size() && isOption(words[index])) {
    if (words[index] == "--") return index + 1;
    index += takesValue(launcher, words[index]) ? 2 : 1;
  }
  return std::min(index, words.size());
}

std::size_t skipAssignments(const Words& words, std::size_t index) {
  while (index < words.size() && isAssignment(words[index]))
    ++index;
  return index;
}

std::optional<Program> programIn(const Words& words, int depth);

std::optional<Program> programFrom(const Words& words, std::size_t index, int depth) {
  if (index >= words.size()) return std::nullopt;
  return programIn(Words(words.begin() + static_cast<std::ptrdiff_t>(index), words.end()), depth + 1);
}

// Steps over "cd folder &&" at the front of a shell's command line.
std::optional<Program> programInShellLine(const std::string& line, int depth) {
  auto words = splitCommandLine(line);
  if (!words) return std::nullopt;
  std::size_t index = skipAssignments(*words, 0);
  while (index < words->size() && (*words)[index] == "cd") {
    while (index < words->size() && (*words)[index] != "&&" && (*words)[index] != ";" &&
           (*words)[index].back() != ';')
      ++index;
    index = skipAssignments(*words, std::min(index + 1, words->size()));
  }
  return programFrom(*words, index, depth);
}

std::optional<Program> scriptAt(const Words& words, std::size_t index) {
  if (index >= words.size() || words[index].empty()) return std::nullopt;
  return Program{Program::Kind::executable, words[index]};
}

std::optional<Program> applicationAt(const Words& words, std::size_t index) {
  if (index >= words.size() || words[index].empty()) return std::nullopt;
  std::string name = words[index];
  if (name.ends_with(".desktop")) name.resize(name.size() - 8);
  return Program{Program::Kind::applicationId, std::move(name)};
}

std::optional<Program> programBehindShell(const Launcher& launcher, const Words& words, int depth) {
  for (std::size_t i = 1; i < words.size() && isOption(words[i]); ++i) {
    // -c also comes together with others: "sh -lc".
    const bool isShort = words[i].front() == '-' && words[i][1] != '-';
    if (isShort && words[i].find('c') != std::string::npos)
      return i + 1 < words.size() ? programInShellLine(words[i + 1], depth) : std::nullopt;
    if (takesValue(launcher, words[i])) ++i;
  }
  return scriptAt(words, skipOptions(launcher, words, 1));
}

std::optional<Program> programBehindInterpreter(const Launcher& launcher, const Words& words) {
  const std::size_t script = skipOptions(launcher, words, 1);
  // A module or a program in the command line itself is no file.
  for (std::size_t i = 1; i < script; ++i) {
    if (words[i] == "-m" || words[i] == "-c" || words[i] == "-e") return std::nullopt;
  }
  if (script + 2 < words.size() && words[script] == "start" && words[script + 1] == "/unix")
    return scriptAt(words, script + 2);
  return scriptAt(words, script);
}

std::optional<Program> programBehind(const Launcher& launcher, const Words& words, int depth) {
  switch (launcher.rule) {
    case Rule::command: {
      std::size_t index = skipAssignments(words, skipOptions(launcher, words, 1));
      return programFrom(words, index, depth);
    }
    case Rule::shell:
      return programBehindShell(launcher, words, depth);
    case Rule::interpreter:
      return programBehindInterpreter(launcher, words);
    case Rule::java:
      for (std::size_t i = 1; i + 1 < words.size(); ++i) {
        if (words[i] == "-jar") return scriptAt(words, i + 1);
      }
      return std::nullopt;
    case Rule::flatpak:
    case Rule::identifier: {
      std::size_t index = skipOptions(launcher, words, 1);
      if (launcher.rule == Rule::flatpak || words[0].ends_with("snap")) {
        if (index >= words.size() || words[index] != "run") return std::nullopt;
        index = skipOptions(launcher, words, index + 1);
      }
      return applicationAt(words, index);
    }
    case Rule::terminal:
      for (std::size_t i = 1; i + 1 < words.size(); ++i) {
        if (words[i] == "-e" || words[i] == "-x" || words[i] == "--") {
          if (i + 2 == words.size()) return programInShellLine(words[i + 1], depth);
          return programFrom(words, i + 1, depth);
        }
      }
      return Program{Program::Kind::executable, words[0]};
  }
  return std::nullopt;
}

std::optional<Program> programIn(const Words& words, int depth) {
  if (words.empty() || words[0].empty() || depth > kMaximumDepth) return std::nullopt;
  const Launcher* launcher = launcherNamed(lastPathComponent(words[0]));
  if (!launcher) return Program{Program::Kind::executable, words[0]};
  return programBehind(*launcher, words, depth);
}

// One field code inside a word that holds more than the code; what stands for a list has no place there.
void appendCode(std::string& word, char code, const DesktopEntry& entry, const std::string& path,
                const std::string& file, const std::string& url) {
  switch (code) {
    case '%':
      word += '%';
      break;
    case 'c':
      word += entry.name;
      break;
    case 'k':
      word += path;
      break;
    case 'f':
    case 'F':
      word += file;
      break;
    case 'u':
    case 'U':
      word += url;
      break;
    default:
      break;  // obsolete or unknown: stands for nothing
  }
}

}  // namespace

std::optional<std::vector<std::string>> splitCommandLine(std::string_view line) {
  Words words;
  std::string word;
  bool inWord = false;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const char character = line[i];
    if (character == ' ' || character == '\t' || character == '\n') {
      if (inWord) words.push_back(std::move(word));
      word.clear();
      inWord = false;
      continue;
    }
    inWord = true;
    if (character == '\'') {
      const std::size_t end = line.find('\'', i + 1);
      if (end == std::string_view::npos) return std::nullopt;
      word += line.substr(i + 1, end - i - 1);
      i = end;
    } else if (character == '"') {
      for (++i; i < line.size() && line[i] != '"'; ++i) {
        const bool escapes = line[i] == '\\' && i + 1 < line.size() &&
                             std::string_view("\"`$\\").find(line[i + 1]) != std::string_view::npos;
        word += line[escapes ? ++i : i];
      }
      if (i >= line.size()) return std::nullopt;
    } else if (character == '\\') {
      if (++i >= line.size()) return std::nullopt;
      word += line[i];
    } else {
      word += character;
    }
  }
  if (inWord) words.push_back(std::move(word));
  return words;
}

std::optional<std::vector<std::string>> expandExec(const DesktopEntry& entry, const std::string& path,
                                                   const std::string& file, const std::string& url) {
  const auto words = splitCommandLine(entry.exec);
  if (!words) return std::nullopt;
  Words arguments;
  for (const std::string& word : *words) {
    if (word == "%i") {
      if (!entry.icon.empty()) {
        arguments.emplace_back("--icon");
        arguments.push_back(entry.icon);
      }
      continue;
    }
    std::string expanded;
    bool hadCode = false;
    for (std::size_t i = 0; i < word.size(); ++i) {
      if (word[i] == '%' && i + 1 < word.size()) {
        hadCode = hadCode || word[i + 1] != '%';
        appendCode(expanded, word[++i], entry, path, file, url);
      } else {
        expanded += word[i];
      }
    }
    if (!expanded.empty() || !hadCode) arguments.push_back(std::move(expanded));
  }
  if (arguments.empty() || arguments[0].empty()) return std::nullopt;
  return arguments;
}

std::optional<Program> programBehind(const std::vector<std::string>& arguments) {
  return programIn(arguments, 0);
}

bool isLauncherOrInterpreter(std::string_view fileName) {
  const Launcher* launcher = launcherNamed(fileName);
  return launcher && launcher->rule != Rule::terminal;
}

}  // namespace harbor
