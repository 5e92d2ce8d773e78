#include "platform/linux/ScreenSaver.h"

#include <gtest/gtest.h>

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QProcess>

#include "EventLoop.h"
#include "PrivateBus.h"
#include "platform/linux/LinuxPowerManager.h"

namespace harbor {
namespace {

const QString kService = QStringLiteral("org.freedesktop.ScreenSaver");
const QString kPath = QStringLiteral("/org/freedesktop/ScreenSaver");

// A desktop's screen-saver service, which is active when the test says so.
class SaverService : public QDBusVirtualObject {
 public:
  explicit SaverService(QDBusConnection bus) : bus_(std::move(bus)) {
    bus_.registerVirtualObject(kPath, this);
    bus_.interface()->registerService(kService);
  }

  QString introspect(const QString&) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    calls.push_back(message.member());
    if (message.member() == QLatin1String("SetActive") && refuses) {
      connection.send(message.createErrorReply(QDBusError::NotSupported, QStringLiteral("no saver here")));
    } else {
      connection.send(message.createReply(QVariant(false)));
    }
    return true;
  }

  void announce(bool active) {
    QDBusMessage signal = QDBusMessage::createSignal(kPath, kService, QStringLiteral("ActiveChanged"));
    signal << active;
    bus_.send(signal);
  }
  auto times(const char* method) const { return calls.count(QLatin1String(method)); }

  QStringList calls;
  bool refuses = false;

 private:
  QDBusConnection bus_;
};

struct ScreenSaverTest : testing::Test {
  PrivateBus bus;
  ScreenSaver saver{nullptr, bus.connect(QStringLiteral("saver"))};
  LinuxPowerManager power{nullptr, saver};

  bool tick() {
    return power
        .createAssertion(PowerManager::kNoDisplaySleepAssertion, PowerManager::kAssertionLevelOn,
                         "Prevent Sleep")
        .has_value();
  }
  static void settle() { runFor(std::chrono::milliseconds(300)); }
};

TEST_F(ScreenSaverTest, TellsAServiceThatIsThereOfTheUsersActivity) {
  SaverService service(bus.connect(QStringLiteral("service")));
  EXPECT_TRUE(waitUntil([&] { return tick() && service.times("SimulateUserActivity") > 0; }));
}

TEST_F(ScreenSaverTest, SendsNothingToANameThatNobodyOwns) {
  QProcess monitor;
  monitor.start(QStringLiteral("dbus-monitor"), {QStringLiteral("--address"), bus.address(),
                                                 QStringLiteral("member='SimulateUserActivity'")});
  QByteArray heard;
  const auto hears = [&](const char* what) {
    heard += monitor.readAllStandardOutput();
    return heard.contains(what);
  };
  // The bus takes a monitor's own name away when it begins to listen.
  ASSERT_TRUE(waitUntil([&] { return hears("NameLost"); }));
  settle();
  EXPECT_TRUE(tick());
  QDBusMessage last = QDBusMessage::createMethodCall(QStringLiteral("org.example.Nobody"), kPath, kService,
                                                     QStringLiteral("SimulateUserActivity"));
  bus.connect(QStringLiteral("last")).send(last);
  ASSERT_TRUE(waitUntil([&] { return hears("org.example.Nobody"); }));
  EXPECT_EQ(heard.count("SimulateUserActivity"), 1) << heard.toStdString();
  monitor.terminate();
  monitor.waitForFinished();
}

TEST_F(ScreenSaverTest, CountsASaverThatWasJustStartedAsActiveUntilItReports) {
  SaverService service(bus.connect(QStringLiteral("service")));
  EXPECT_TRUE(waitUntil([&] { return tick() && service.times("SimulateUserActivity") > 0; }));
  const auto before = service.times("SimulateUserActivity");
  EXPECT_TRUE(saver.activate());
  EXPECT_FALSE(tick());
  EXPECT_TRUE(waitUntil([&] { return service.times("SetActive") == 1; }));
  settle();
  EXPECT_FALSE(tick());
  service.announce(true);
  settle();
  EXPECT_FALSE(tick());
  service.announce(false);
  EXPECT_TRUE(waitUntil([&] { return tick(); }));
  EXPECT_TRUE(waitUntil([&] { return service.times("SimulateUserActivity") > before; }));
}

TEST_F(ScreenSaverTest, AStartThatNobodyTookEndsTheWaiting) {
  SaverService service(bus.connect(QStringLiteral("service")));
  service.refuses = true;
  EXPECT_TRUE(saver.activate());
  EXPECT_FALSE(tick());
  EXPECT_TRUE(waitUntil([&] { return tick(); }));
}

}  // namespace
}  // namespace harbor
