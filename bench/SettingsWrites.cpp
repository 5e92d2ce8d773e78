// Stores 100 changed settings and 100 unchanged ones in the given folder, to be watched by strace.
#include <cstdio>
#include <string>

#include "platform/linux/LinuxSettingsStore.h"
#include "platform/plist/LibplistCoder.h"

int main(int argc, char** argv) {
  constexpr int kWrites = 100;
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
    return 2;
  }
  const harbor::LibplistCoder coder;
  harbor::LinuxSettingsStore store(std::string(argv[1]) + "/settings.plist", coder);
  for (int i = 0; i < kWrites; ++i) {
    const std::string value = std::to_string(i) + "% Opacity";
    if (!store.setString("SelectedOpacity", value) || !store.setString("SelectedOpacity", value)) return 1;
  }
  return 0;
}
