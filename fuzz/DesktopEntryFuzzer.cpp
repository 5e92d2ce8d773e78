// Desktop entries: the key file, the entry, its command line and the program behind it.

#include "Fuzzer.h"
#include "platform/linux/DesktopEntry.h"
#include "platform/linux/ExecLine.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  harbor::XdgEnvironment environment;
  environment.locale = "sr_YU.UTF-8@Latn";
  environment.currentDesktops = {"GNOME"};
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const auto entry = harbor::DesktopEntry::parse(bytes, environment);
  if (!entry) return 0;
  entry->isOffered(environment);
  const auto arguments = harbor::expandExec(*entry, "/e.desktop", "/a file", "file:///a%20file");
  harbor::require(!arguments || !arguments->empty(), "a command line has a program");
  if (arguments) harbor::programBehind(*arguments);
  harbor::require(entry->name.find_first_of(std::string_view("\n\r\t\0", 4)) == std::string::npos,
                  "a name is one line");
  return 0;
}
