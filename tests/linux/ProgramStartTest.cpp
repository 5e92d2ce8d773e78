// Starts the program itself, as a user or a session would, without a display. Each test has to run in a
// process of its own, as under ctest, because Qt connects to the session bus once.
#include <gtest/gtest.h>

#include <csignal>

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QTemporaryDir>

#include "OffscreenApplication.h"
#include "platform/linux/SingleInstance.h"

namespace harbor {
namespace {

struct Ended {
  int status = -1;
  std::string output;
  std::string errors;
};

class ProgramStart : public testing::Test {
 protected:
  ProgramStart() {
    environment.insert("PATH", qEnvironmentVariable("PATH"));
    environment.insert("HOME", folder.path());
    environment.insert("XDG_CONFIG_HOME", folder.path());
    environment.insert("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
  }

  Ended start(const QStringList& arguments) {
    QProcess program;
    program.setProcessEnvironment(environment);
    program.start(HARBOR_TRAY_PROGRAM, arguments);
    EXPECT_TRUE(runUntil([&] { return program.state() == QProcess::NotRunning; }));
    program.kill();
    program.waitForFinished(1000);
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    return {program.exitCode(), program.readAllStandardOutput().toStdString(),
            program.readAllStandardError().toStdString()};
  }

  void writeFile(const QString& name, const QByteArray& contents) {
    QFile file(folder.filePath(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(contents);
  }

  QApplication& application = offscreenApplication();
  QTemporaryDir folder;
  QProcessEnvironment environment;
};

TEST_F(ProgramStart, TellsItsUsageAndVersionWithoutADisplayOrABus) {
  const Ended help = start({"--help"});
  EXPECT_EQ(help.status, 0);
  EXPECT_EQ(help.output.rfind("Usage: harbor-tray", 0), 0U);
  const Ended version = start({"--version"});
  EXPECT_EQ(version.status, 0);
  EXPECT_EQ(version.output, "Harbor Tray " HARBOR_VERSION "\n");
}

TEST_F(ProgramStart, RefusesWhatItDoesNotKnowWithStatus2) {
  for (const char* const argument : {"--no-such-option", "file", "-x"}) {
    const Ended ended = start({argument});
    EXPECT_EQ(ended.status, 2);
    EXPECT_NE(ended.errors.find(argument), std::string::npos);
  }
}

TEST_F(ProgramStart, ListsRelatedFilesWithoutADisplay) {
  QDir home(folder.path());
  ASSERT_TRUE(home.mkpath("Harbor Test Sketchbook.app/Contents"));
  ASSERT_TRUE(home.mkpath("share/applications"));
  writeFile("Harbor Test Sketchbook.app/Contents/Info.plist",
            "<plist version=\"1.0\"><dict><key>CFBundleName</key><string>Harbor Test "
            "Sketchbook</string></dict></plist>");
  writeFile(
      "share/applications/org.example.HarborTestSketchbook.desktop",
      "[Desktop Entry]\nType=Application\nName=Harbor Test Sketchbook\nExec=sketchbook\nNoDisplay=true\n");
  environment.insert("XDG_DATA_HOME", folder.filePath("share"));
  for (const char* const name :
       {"Harbor Test Sketchbook.app", "share/applications/org.example.HarborTestSketchbook.desktop"}) {
    const Ended ended = start({"--related", folder.filePath(name), "--json"});
    EXPECT_EQ(ended.status, 0) << ended.errors;
    const QJsonArray items = QJsonDocument::fromJson(QByteArray::fromStdString(ended.output)).array();
    ASSERT_FALSE(items.isEmpty()) << ended.output;
    EXPECT_EQ(items[0]["path"].toString(), folder.filePath(name));
    EXPECT_EQ(items[0]["isFolder"].toBool(), QFileInfo(folder.filePath(name)).isDir());
    EXPECT_GT(items[0]["bytes"].toInt(), 0);
    const Ended table = start({"--related", folder.filePath(name)});
    EXPECT_EQ(table.status, 0) << table.errors;
    EXPECT_NE(table.output.find(folder.filePath(name).toStdString()), std::string::npos);
  }
}

TEST_F(ProgramStart, SaysThatAPathIsNoApplication) {
  writeFile("notes\n.txt", "text");
  writeFile("broken.desktop", "no entry at all");
  writeFile("file.app", "no folder");
  for (const char* const name : {"missing.app", "notes\n.txt", "broken.desktop", "file.app", ""}) {
    const Ended ended = start({"--related", folder.filePath(name)});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.output, "");
    const QString shown = folder.filePath(name).replace("\n", "\\u000a");
    EXPECT_EQ(ended.errors, "harbor-tray: there is no \".app\" folder or desktop entry at \"" +
                                shown.toStdString() + "\"\n");
  }
}

TEST_F(ProgramStart, RefusesACommandThatIsIncompleteOrHasTooMuch) {
  const std::pair<QStringList, std::string> rows[] = {
      {{"--related"}, "--related needs the path of an application"},
      {{"--related", "a.app", "b.app"}, "unknown argument \"b.app\""},
      {{"--related", "a.app", "--json", "more"}, "unknown argument \"more\""},
      {{"--measure", "a.app"}, "unknown argument \"a.app\""},
      {{"--measure", "--json", "more"}, "unknown argument \"more\""},
      {{"--json"}, "unknown argument \"--json\""},
  };
  for (const auto& [arguments, message] : rows) {
    const Ended ended = start(arguments);
    EXPECT_EQ(ended.status, 2);
    EXPECT_EQ(ended.errors, "harbor-tray: " + message + "; see harbor-tray --help\n");
  }
}

TEST_F(ProgramStart, SaysThatItsAnswerCouldNotBeWritten) {
  QProcess program;
  program.setProcessEnvironment(environment);
  program.setStandardOutputFile("/dev/full");
  program.start(HARBOR_TRAY_PROGRAM, {"--version"});
  EXPECT_TRUE(program.waitForFinished(5000));
  EXPECT_EQ(program.exitCode(), 1);
  EXPECT_NE(program.readAllStandardError(), "");
}

TEST_F(ProgramStart, SaysThatThereIsNoDisplay) {
  const Ended ended = start({});
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(ended.errors, "harbor-tray: there is no display: neither DISPLAY nor WAYLAND_DISPLAY is set.\n");
}

TEST_F(ProgramStart, SaysWhichDisplayDoesNotAnswer) {
  for (const char* const platform : {"", "xcb"}) {
    environment.insert("DISPLAY", ":65000");
    environment.insert("QT_QPA_PLATFORM", platform);
    const Ended ended = start({});
    EXPECT_EQ(ended.status, 1);
    EXPECT_NE(ended.errors.find("the X server at \":65000\""), std::string::npos);
  }
  environment.remove("DISPLAY");
  environment.remove("QT_QPA_PLATFORM");
  environment.insert("WAYLAND_DISPLAY", "wayland-65000");
  environment.insert("XDG_RUNTIME_DIR", folder.path());
  const Ended ended = start({});
  EXPECT_EQ(ended.status, 1);
  EXPECT_NE(ended.errors.find("the Wayland compositor at \"wayland-65000\""), std::string::npos);
}

class SecondStart : public ProgramStart {
 protected:
  SecondStart() {
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    environment.insert("DISPLAY", display);
    qputenv("DISPLAY", display.toUtf8());
    for (const char* const variable : {"WAYLAND_DISPLAY", "XDG_RUNTIME_DIR"})
      qunsetenv(variable);
  }
  ~SecondStart() override {
    bus.kill();
    bus.waitForFinished(1000);
  }

  void startBus() {
    bus.start("dbus-daemon", {"--session", "--nofork", "--print-address"});
    ASSERT_TRUE(bus.waitForStarted(5000));
    ASSERT_TRUE(bus.waitForReadyRead(5000));
    useBus(bus.readLine().trimmed());
  }
  void useBus(const QByteArray& address) {
    qputenv("DBUS_SESSION_BUS_ADDRESS", address);
    environment.insert("DBUS_SESSION_BUS_ADDRESS", QString::fromUtf8(address));
  }
  void expectSecondStartsToActivateTheFirst() {
    int activations = 0;
    SingleInstance first([&] { ++activations; });
    ASSERT_EQ(first.claim(), SingleInstance::Role::first);
    for (const int expected : {1, 2}) {
      EXPECT_EQ(start({}).status, 0);
      EXPECT_TRUE(runUntil([&] { return activations == expected; }));
    }
  }

  QProcess bus;
  // Nobody listens there: it only makes the address of the socket this test's own.
  const QString display = QStringLiteral(":harbor-test-%1").arg(QCoreApplication::applicationPid());
};

TEST_F(SecondStart, ActivatesTheFirstOverTheBusAndEndsWithStatus0) {
  startBus();
  expectSecondStartsToActivateTheFirst();
}

TEST_F(SecondStart, ActivatesTheFirstWithoutABus) {
  useBus("unix:path=/nonexistent");
  expectSecondStartsToActivateTheFirst();
}

TEST_F(SecondStart, ActivatesTheFirstThatIsNotOnTheBusWhichHasBeenStartedAnew) {
  startBus();
  int activations = 0;
  SingleInstance first([&] { ++activations; });
  ASSERT_EQ(first.claim(), SingleInstance::Role::first);
  bus.kill();
  bus.waitForFinished(5000);
  startBus();
  EXPECT_EQ(start({}).status, 0);
  EXPECT_TRUE(runUntil([&] { return activations == 1; }));
}

TEST_F(SecondStart, EndsWhenTheFirstDoesNotAnswer) {
  startBus();
  SingleInstance first([] {});
  ASSERT_EQ(first.claim(), SingleInstance::Role::first);
  QProcess program;
  program.setProcessEnvironment(environment);
  program.start(HARBOR_TRAY_PROGRAM, {});
  // This thread, which would have to answer, waits here.
  EXPECT_TRUE(program.waitForFinished(8000));
  EXPECT_EQ(program.exitCode(), 0);
}

class EndingSignals : public ProgramStart, public testing::WithParamInterface<int> {};

TEST_P(EndingSignals, EndTheProgramInAnOrderlyWay) {
  environment.insert("QT_QPA_PLATFORM", "offscreen");
  // Without a bus the first start is known by user and display: a display of its own keeps it apart from the
  // others.
  environment.insert("DISPLAY", QStringLiteral(":%1").arg(QCoreApplication::applicationPid()));
  QProcess program;
  program.setProcessEnvironment(environment);
  program.start(HARBOR_TRAY_PROGRAM, {});
  ASSERT_TRUE(program.waitForStarted(5000));
  // The handlers are in place once the program catches the signal.
  const auto catches = [&] {
    QFile status(QStringLiteral("/proc/%1/status").arg(program.processId()));
    if (!status.open(QIODevice::ReadOnly)) return false;
    const QByteArray text = status.readAll();
    const qsizetype at = text.indexOf("SigCgt:");
    return at >= 0 && (text.mid(at + 7, 17).trimmed().toULongLong(nullptr, 16) >> (GetParam() - 1)) & 1;
  };
  ASSERT_TRUE(runUntil(catches));
  ASSERT_EQ(kill(static_cast<pid_t>(program.processId()), GetParam()), 0);
  EXPECT_TRUE(program.waitForFinished(5000));
  EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
  EXPECT_EQ(program.exitCode(), 0);
}

INSTANTIATE_TEST_SUITE_P(Signals, EndingSignals, testing::Values(SIGTERM, SIGINT, SIGHUP));

}  // namespace
}  // namespace harbor
