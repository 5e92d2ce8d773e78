#include "platform/linux/LinuxStoreReview.h"

#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVirtualObject>

#include "EventLoop.h"
#include "PrivateBus.h"

namespace harbor {
namespace {

const QString kService = QStringLiteral("org.freedesktop.Notifications");
const QString kPath = QStringLiteral("/org/freedesktop/Notifications");

// The desktop's notification service, whose user is the test.
class NotificationService : public QDBusVirtualObject {
 public:
  explicit NotificationService(QDBusConnection bus) : bus_(std::move(bus)) {
    bus_.registerVirtualObject(kPath, this);
    bus_.interface()->registerService(kService);
  }

  QString introspect(const QString&) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    if (message.member() != QLatin1String("Notify")) return false;
    shown.push_back(message.arguments());
    const uint replaced = message.arguments().value(1).toUInt();
    connection.send(message.createReply(replaced ? replaced : ++last));
    return true;
  }

  void invoke(uint notification, const char* action) {
    QDBusMessage signal = QDBusMessage::createSignal(kPath, kService, QStringLiteral("ActionInvoked"));
    signal << notification << QString::fromLatin1(action);
    bus_.send(signal);
  }
  void close(uint notification) {
    constexpr uint kDismissed = 2;
    QDBusMessage signal = QDBusMessage::createSignal(kPath, kService, QStringLiteral("NotificationClosed"));
    signal << notification << kDismissed;
    bus_.send(signal);
  }

  QList<QList<QVariant>> shown;
  uint last = 0;

 private:
  QDBusConnection bus_;
};

struct LinuxStoreReviewTest : testing::Test {
  PrivateBus bus;
  int rated = 0;
  LinuxStoreReview review{[this] { ++rated; }, bus.connect(QStringLiteral("review"))};

  // Requests, and returns when the service has answered.
  void request(NotificationService& service) {
    const auto before = service.shown.size();
    review.requestReview();
    EXPECT_TRUE(waitUntil([&] { return service.shown.size() == before + 1; }));
    settle();
  }
  // Everything that is under way on the bus has arrived.
  static void settle() { runFor(std::chrono::milliseconds(600)); }
};

TEST_F(LinuxStoreReviewTest, ShowsOneNotificationWithTheActionRate) {
  NotificationService service(bus.connect(QStringLiteral("service")));
  request(service);
  ASSERT_EQ(service.shown.size(), 1);
  const auto& arguments = service.shown[0];
  EXPECT_EQ(arguments[0].toString(), QStringLiteral("Harbor Tray"));
  EXPECT_EQ(arguments[1].toUInt(), 0u);
  EXPECT_FALSE(arguments[3].toString().isEmpty());
  EXPECT_EQ(arguments[5].toStringList(), (QStringList{QStringLiteral("rate"), QStringLiteral("Rate")}));
  EXPECT_EQ(arguments[7].toInt(), -1);
  EXPECT_EQ(rated, 0);
}

TEST_F(LinuxStoreReviewTest, ChoosingRateOpensThePageOnce) {
  NotificationService service(bus.connect(QStringLiteral("service")));
  request(service);
  service.invoke(service.last, "rate");
  EXPECT_TRUE(waitUntil([&] { return rated == 1; }));
  service.invoke(service.last, "rate");
  settle();
  EXPECT_EQ(rated, 1);
}

TEST_F(LinuxStoreReviewTest, OtherActionsAndOtherNotificationsDoNothing) {
  NotificationService service(bus.connect(QStringLiteral("service")));
  request(service);
  service.invoke(service.last + 1, "rate");
  service.invoke(service.last, "default");
  settle();
  EXPECT_EQ(rated, 0);
}

TEST_F(LinuxStoreReviewTest, ADismissedNotificationStaysAway) {
  NotificationService service(bus.connect(QStringLiteral("service")));
  request(service);
  service.close(service.last);
  settle();
  service.invoke(service.last, "rate");
  settle();
  EXPECT_EQ(rated, 0);
  EXPECT_EQ(service.shown.size(), 1);
}

TEST_F(LinuxStoreReviewTest, TheNextRequestReplacesWhatStillShowsAndIsNewAfterADismissal) {
  NotificationService service(bus.connect(QStringLiteral("service")));
  request(service);
  request(service);
  EXPECT_EQ(service.shown[1][1].toUInt(), 1u);
  service.close(1);
  settle();
  request(service);
  EXPECT_EQ(service.shown[2][1].toUInt(), 0u);
}

TEST_F(LinuxStoreReviewTest, WithoutAServiceNothingHappens) {
  review.requestReview();
  settle();
  EXPECT_EQ(rated, 0);
  NotificationService late(bus.connect(QStringLiteral("service")));
  settle();
  EXPECT_EQ(late.shown.size(), 0) << "the request was for its moment";
  request(late);
  EXPECT_EQ(late.shown.size(), 1);
}

TEST_F(LinuxStoreReviewTest, WithoutABusNothingHappens) {
  LinuxStoreReview alone([this] { ++rated; }, QDBusConnection(QStringLiteral("none")));
  alone.requestReview();
  EXPECT_EQ(rated, 0);
}

}  // namespace
}  // namespace harbor
