#include "platform/linux/DesktopEntry.h"

#include <gtest/gtest.h>

#include "platform/linux/ExecLine.h"
#include "support/TemporaryFolder.h"

namespace harbor {
namespace {

XdgEnvironment environmentWithLocale(std::string locale) {
  XdgEnvironment environment;
  environment.locale = std::move(locale);
  return environment;
}

std::string entryWith(const std::string& keys) {
  return "[Desktop Entry]\nType=Application\nName=Plain\nExec=true\n" + keys;
}

TEST(DesktopEntry, TakesTheNameOfTheBestLocale) {
  const std::string bytes = entryWith(
      "Name[sr]=sr\nName[sr_YU]=sr_YU\nName[sr@Latn]=sr@Latn\nName[sr_YU@Latn]=sr_YU@Latn\nName[de]=de\n");
  const std::pair<const char*, const char*> cases[] = {
      {"sr_YU.UTF-8@Latn", "sr_YU@Latn"},
      {"sr_YU.UTF-8", "sr_YU"},
      {"sr_RS@Latn", "sr@Latn"},
      {"sr_RS", "sr"},
      {"de_AT.UTF-8", "de"},
      {"fr_FR.UTF-8", "Plain"},
      {"C", "Plain"},
      {"POSIX", "Plain"},
      {"", "Plain"},
      {"C.UTF-8", "Plain"},
  };
  for (const auto& [locale, name] : cases) {
    const auto entry = DesktopEntry::parse(bytes, environmentWithLocale(locale));
    ASSERT_TRUE(entry) << locale;
    EXPECT_EQ(entry->name, name) << locale;
  }
}

TEST(DesktopEntry, IsNothingUnlessItIsAnApplication) {
  for (const char* bytes :
       {"", "Type=Application\n", "[Desktop Entry]\nName=x\n", "[Desktop Entry]\nType=Link\nName=x\n",
        "[Desktop Action New]\nType=Application\n", "[Desktop Entry\nType=Application\n"}) {
    EXPECT_FALSE(DesktopEntry::parse(bytes, {})) << bytes;
  }
}

TEST(DesktopEntry, KeepsActionsApartFromTheEntry) {
  const auto entry =
      DesktopEntry::parse(entryWith("[Desktop Action New]\nName=New Window\nExec=other\n"), {});
  ASSERT_TRUE(entry);
  EXPECT_EQ(entry->name, "Plain");
  EXPECT_EQ(entry->exec, "true");
}

TEST(DesktopEntry, SurvivesHostileBytes) {
  const std::string zeros(5000, '\0');
  EXPECT_FALSE(DesktopEntry::parse(zeros, {}));
  const auto broken =
      DesktopEntry::parse(entryWith("Name[de]=\xFF\xFE\nComment=\xFF\n"), environmentWithLocale("de"));
  ASSERT_TRUE(broken);
  EXPECT_EQ(broken->name, "Plain");
  const auto twice = DesktopEntry::parse(entryWith("[Desktop Entry]\nName=Second\n"), {});
  ASSERT_TRUE(twice);
  EXPECT_EQ(twice->name, "Second");
  const auto lines = DesktopEntry::parse(entryWith("Name=One\\nTwo\\tThree\n"), {});
  ASSERT_TRUE(lines);
  EXPECT_EQ(lines->name, "One Two Three");
}

TEST(DesktopEntry, IsNothingWhenTheFileIsHugeOrNoFile) {
  const TemporaryFolder folder;
  const std::string huge =
      folder.makeFile("huge.desktop", entryWith("Comment=" + std::string(2 << 20, 'x') + "\n"));
  EXPECT_FALSE(DesktopEntry::read(huge, {}));
  EXPECT_FALSE(DesktopEntry::read(folder.makeFolder("folder.desktop"), {}));
  EXPECT_FALSE(DesktopEntry::read(folder.path("missing.desktop"), {}));
}

TEST(DesktopEntry, IsOfferedByItsFlagsAndTheDesktop) {
  XdgEnvironment environment;
  environment.currentDesktops = {"ubuntu", "GNOME"};
  const std::pair<const char*, bool> cases[] = {
      {"", true},
      {"Hidden=true\n", false},
      {"NoDisplay=true\n", false},
      {"NoDisplay=false\n", true},
      {"OnlyShowIn=GNOME;XFCE;\n", true},
      {"OnlyShowIn=KDE;\n", false},
      {"OnlyShowIn=\n", false},
      {"NotShowIn=GNOME;\n", false},
      {"NotShowIn=KDE;\n", true},
      {"TryExec=/nonexistent/program\n", false},
      {"TryExec=/bin/sh\n", true},
      {"Exec=\n", false},
      {"Exec=\nDBusActivatable=true\n", true},
  };
  for (const auto& [keys, isOffered] : cases) {
    const auto entry = DesktopEntry::parse(entryWith(keys), environment);
    ASSERT_TRUE(entry) << keys;
    EXPECT_EQ(entry->isOffered(environment), isOffered) << keys;
  }
}

TEST(ExecLine, SplitsByTheQuotingRules) {
  using Words = std::vector<std::string>;
  EXPECT_EQ(splitCommandLine("a  b\tc"), (Words{"a", "b", "c"}));
  EXPECT_EQ(splitCommandLine(R"("a b" c)"), (Words{"a b", "c"}));
  EXPECT_EQ(splitCommandLine(R"("\"\`\$\\" "\n")"), (Words{"\"`$\\", "\\n"}));
  EXPECT_EQ(splitCommandLine("'a \"b' c\\ d"), (Words{"a \"b", "c d"}));
  EXPECT_EQ(splitCommandLine("a\"\" \"\""), (Words{"a", ""}));
  EXPECT_EQ(splitCommandLine(""), Words{});
  EXPECT_EQ(splitCommandLine("\"open"), std::nullopt);
  EXPECT_EQ(splitCommandLine("'open"), std::nullopt);
  EXPECT_EQ(splitCommandLine("open\\"), std::nullopt);
}

TEST(ExecLine, ReplacesFieldCodes) {
  using Words = std::vector<std::string>;
  DesktopEntry entry;
  entry.name = "My Editor";
  entry.icon = "edit";
  const auto expand = [&entry](const char* exec, const std::string& file) {
    entry.exec = exec;
    return expandExec(entry, "/e.desktop", file, file.empty() ? "" : "file://" + file);
  };
  EXPECT_EQ(expand("edit %f", "/a b"), (Words{"edit", "/a b"}));
  EXPECT_EQ(expand("edit %F", "/a; rm -rf x"), (Words{"edit", "/a; rm -rf x"}));
  EXPECT_EQ(expand("edit %u", "/a"), (Words{"edit", "file:///a"}));
  EXPECT_EQ(expand("edit %U", ""), (Words{"edit"}));
  EXPECT_EQ(expand("edit --open=%f x", "/a"), (Words{"edit", "--open=/a", "x"}));
  EXPECT_EQ(expand("edit %i -n %c %k", ""),
            (Words{"edit", "--icon", "edit", "-n", "My Editor", "/e.desktop"}));
  EXPECT_EQ(expand("edit 100%% %d%D%n%N%v%m", ""), (Words{"edit", "100%"}));
  EXPECT_EQ(expand("edit \"\"", ""), (Words{"edit", ""}));
  EXPECT_EQ(expand("", ""), std::nullopt);
  EXPECT_EQ(expand("\"broken", ""), std::nullopt);
}

TEST(ExecLine, StepsOverLaunchersAndInterpreters) {
  const std::pair<const char*, const char*> programs[] = {
      {"firefox-esr %u", "firefox-esr"},
      {"/usr/bin/xterm", "/usr/bin/xterm"},
      {"env -u B A=1 nice -n 5 editor", "editor"},
      {"env WINEPREFIX=/w wine start /unix /w/app.exe", "/w/app.exe"},
      {"wine /w/app.exe", "/w/app.exe"},
      {"sh -c 'cd /opt && exec ./tool \"$1\"'", "./tool"},
      {"bash -lc \"FOO=1 tool\"", "tool"},
      {"sh /opt/start.sh", "/opt/start.sh"},
      {"python3 -u /usr/bin/app.py", "/usr/bin/app.py"},
      {"python3.11 /usr/bin/app.py", "/usr/bin/app.py"},
      {"perl -I /lib /usr/bin/tool.pl", "/usr/bin/tool.pl"},
      {"java -cp x -jar /opt/tool.jar", "/opt/tool.jar"},
      {"pkexec /usr/sbin/gparted", "/usr/sbin/gparted"},
      {"xterm -e top", "top"},
      {"gnome-terminal -- htop -d 1", "htop"},
      {"konsole", "konsole"},
  };
  for (const auto& [line, program] : programs) {
    EXPECT_EQ(programBehind(*splitCommandLine(line)), (Program{Program::Kind::executable, program})) << line;
  }
  const std::pair<const char*, const char*> identifiers[] = {
      {"/usr/bin/flatpak run --branch=stable --command=x org.gimp.GIMP @@u %U @@", "org.gimp.GIMP"},
      {"snap run firefox", "firefox"},
      {"gtk-launch org.gnome.Maps.desktop", "org.gnome.Maps"},
  };
  for (const auto& [line, identifier] : identifiers) {
    EXPECT_EQ(programBehind(*splitCommandLine(line)), (Program{Program::Kind::applicationId, identifier}))
        << line;
  }
}

TEST(ExecLine, FindsNoProgramWhereThereIsNone) {
  std::string nested = "env";
  for (int i = 0; i < 100; ++i)
    nested += " env";
  for (const std::string& line :
       {std::string("env"), std::string("python3 -m http.server"), std::string("python3"),
        std::string("java Main"), std::string("flatpak install x"), std::string("sh -c"),
        std::string("sh -c 'broken"), nested + " tool"}) {
    const auto words = splitCommandLine(line);
    EXPECT_EQ(words ? programBehind(*words) : std::nullopt, std::nullopt) << line;
  }
}

}  // namespace
}  // namespace harbor
