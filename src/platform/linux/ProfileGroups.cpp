#include "platform/linux/ProfileGroups.h"

#include <dirent.h>
#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <string_view>

#include "base/FolderPath.h"

namespace harbor {
namespace {

constexpr std::size_t kLargestDatabase = 16 << 20;
constexpr std::size_t kMostGroups = 100;
constexpr std::size_t kMostProfiles = 1000;
constexpr int kMostSteps = 1'000'000;  // of SQLite's virtual machine
constexpr int kLongestText = 1 << 16;  // bytes
constexpr std::string_view kEnding = ".sqlite";

struct CloseFolder {
  void operator()(DIR* folder) const { ::closedir(folder); }
};
struct CloseDatabase {
  void operator()(sqlite3* database) const { ::sqlite3_close(database); }
};
struct EndStatement {
  void operator()(sqlite3_stmt* statement) const { ::sqlite3_finalize(statement); }
};
using Database = std::unique_ptr<sqlite3, CloseDatabase>;
using Statement = std::unique_ptr<sqlite3_stmt, EndStatement>;

std::vector<std::string> databasesIn(int folder) {
  std::vector<std::string> names;
  const int descriptor = ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  const std::unique_ptr<DIR, CloseFolder> entries(descriptor < 0 ? nullptr : ::fdopendir(descriptor));
  while (const dirent* entry = entries ? ::readdir(entries.get()) : nullptr) {
    if (std::string_view(entry->d_name).ends_with(kEnding)) names.emplace_back(entry->d_name);
    if (names.size() == kMostGroups) break;
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::optional<std::string> contentsOf(int folder, const std::string& name) {
  const FileDescriptor file(::openat(folder, name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  struct stat status;
  if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  std::string bytes;
  char buffer[16384];
  ssize_t count = 0;
  while ((count = ::read(file.get(), buffer, sizeof buffer)) > 0) {
    bytes.append(buffer, static_cast<std::size_t>(count));
    if (bytes.size() > kLargestDatabase) return std::nullopt;
  }
  return count == 0 ? std::optional(std::move(bytes)) : std::nullopt;
}

// In memory a database has no log beside it, so it must not ask for one.
void forgetLog(std::string& bytes) {
  constexpr std::size_t kFormats = 18;  // where the header says how the file is written and read
  constexpr char kWithLog = 2;
  constexpr char kPlain = 1;
  for (const std::size_t at : {kFormats, kFormats + 1}) {
    if (bytes.size() > at && bytes[at] == kWithLog) bytes[at] = kPlain;
  }
}

Statement prepare(sqlite3* database, const char* text) {
  sqlite3_stmt* prepared = nullptr;
  ::sqlite3_prepare_v2(database, text, -1, &prepared, nullptr);
  return Statement(prepared);
}

// Whether the paths stand in the database. A column that is computed may take any time: one call of a
// function is one step.
bool isStored(sqlite3* database) {
  const Statement kind =
      prepare(database, "SELECT hidden FROM pragma_table_xinfo('Profiles') WHERE name = 'path'");
  return kind && ::sqlite3_step(kind.get()) == SQLITE_ROW && ::sqlite3_column_int(kind.get(), 0) == 0;
}

void appendPaths(std::vector<std::string>& paths, std::string bytes) {
  forgetLog(bytes);
  sqlite3* opened = nullptr;
  const int result =
      ::sqlite3_open_v2(":memory:", &opened, SQLITE_OPEN_READWRITE | SQLITE_OPEN_MEMORY, nullptr);
  const Database database(opened);
  if (result != SQLITE_OK) return;
  for (const int option : {SQLITE_DBCONFIG_TRUSTED_SCHEMA, SQLITE_DBCONFIG_ENABLE_VIEW,
                           SQLITE_DBCONFIG_ENABLE_TRIGGER, SQLITE_DBCONFIG_ENABLE_LOAD_EXTENSION})
    ::sqlite3_db_config(database.get(), option, 0, nullptr);
  ::sqlite3_db_config(database.get(), SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  ::sqlite3_limit(database.get(), SQLITE_LIMIT_LENGTH, kLongestText);
  ::sqlite3_progress_handler(
      database.get(), kMostSteps, [](void*) { return 1; }, nullptr);
  const auto size = static_cast<sqlite3_int64>(bytes.size());
  if (::sqlite3_deserialize(database.get(), "main", reinterpret_cast<unsigned char*>(bytes.data()), size,
                            size, SQLITE_DESERIALIZE_READONLY) != SQLITE_OK)
    return;
  if (!isStored(database.get())) return;
  const Statement statement = prepare(database.get(), "SELECT path FROM Profiles");
  while (statement && paths.size() < kMostProfiles && ::sqlite3_step(statement.get()) == SQLITE_ROW) {
    if (::sqlite3_column_type(statement.get(), 0) != SQLITE_TEXT) continue;
    const unsigned char* const text = ::sqlite3_column_text(statement.get(), 0);
    const int length = ::sqlite3_column_bytes(statement.get(), 0);
    if (text) paths.emplace_back(reinterpret_cast<const char*>(text), static_cast<std::size_t>(length));
  }
}

}  // namespace

std::vector<std::string> pathsInProfileGroups(const std::string& folder) {
  std::vector<std::string> paths;
  const auto groups = FolderPath::withoutLinks(folder + "/Profile Groups");
  if (!groups) return paths;
  for (const std::string& name : databasesIn(groups->folder.get())) {
    if (auto bytes = contentsOf(groups->folder.get(), name)) appendPaths(paths, std::move(*bytes));
  }
  return paths;
}

}  // namespace harbor
