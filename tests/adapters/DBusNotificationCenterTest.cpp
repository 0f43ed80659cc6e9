#include <unistd.h>

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <optional>

#include "linux/dbus/DBusNotificationCenter.h"
#include "support/AdapterTest.h"

namespace quilex {

class Listener : public QObject {
  Q_OBJECT

 public:
  QList<QDBusMessage> heard;

 public slots:
  void hear(const QDBusMessage& message) { heard.append(message); }
};

class DBusNotificationCenterTest : public ::testing::Test {
 protected:
  // As another program that speaks the protocol would.
  void postFromOutside(const char* name) {
    auto message =
        QDBusMessage::createSignal("/com/dravo/quilex/Notifications", "com.dravo.quilex.Notifications", "Posted");
    other.send(message << name << "someone" << QVariantMap{{"key", 1}});
  }

  QDBusConnection other = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "other");
  DBusNotificationCenter center;
};

TEST_F(DBusNotificationCenterTest, PostIsOneSignalOfTheProtocol) {
  Listener listener;
  ASSERT_TRUE(other.connect({}, {}, {}, "Posted", &listener, SLOT(hear(QDBusMessage))));
  other.interface()->isServiceRegistered("a.b");  // The bus has the registration once it answers this.
  center.post("Name");
  ASSERT_TRUE(waitFor([&] { return !listener.heard.isEmpty(); }));
  const QDBusMessage& message = listener.heard.front();
  EXPECT_EQ(message.path(), "/com/dravo/quilex/Notifications");
  EXPECT_EQ(message.interface(), "com.dravo.quilex.Notifications");
  EXPECT_EQ(message.signature(), "ssa{sv}");
  EXPECT_EQ(message.arguments().at(0).toString(), "Name");
}

TEST_F(DBusNotificationCenterTest, ObserversHearTheirNameFromAnySenderUntilReleased) {
  int observed = 0;
  int inside = 0;
  int others = 0;
  const auto otherName = center.observe("B", [&] { ++others; });
  std::optional<Disposable> once = center.observe("A", [&, one = 1] {
    once.reset();
    inside += one;
  });
  std::optional<Disposable> token = center.observe("A", [&] { ++observed; });
  // What a process posts as its last act arrives.
  EXPECT_EXIT(DBusNotificationCenter().post("A"); _exit(0), ::testing::ExitedWithCode(0), "");
  EXPECT_TRUE(waitFor([&] { return observed == 1; }));
  DBusNotificationCenter().post("A");
  EXPECT_TRUE(waitFor([&] { return observed == 2; }));
  postFromOutside("AB");
  postFromOutside("A");
  EXPECT_TRUE(waitFor([&] { return observed == 3; }));
  EXPECT_EQ(inside, 1);
  EXPECT_EQ(others, 0);

  token.reset();
  postFromOutside("A");
  postFromOutside("B");
  EXPECT_TRUE(waitFor([&] { return others == 1; }));
  EXPECT_EQ(observed, 3);
}

TEST_F(DBusNotificationCenterTest, OneProcessOfTheSessionIsTheFirst) {
  const InstanceState state = claimInstanceName();
  EXPECT_EXIT(_exit(claimInstanceName() == InstanceState::another ? 0 : 1), ::testing::ExitedWithCode(0), "");
  EXPECT_EQ(state, InstanceState::first);
}

TEST(DBusNotificationCenterWithoutBusTest, IsNeutral) {
  const auto neutral = [] {
    setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent", 1);
    DBusNotificationCenter center;
    const auto token = center.observe("A", [] {});
    center.post("A");
    return claimInstanceName() == InstanceState::noBus;
  };
  EXPECT_EXIT(_exit(neutral() ? 0 : 1), ::testing::ExitedWithCode(0), "");
}

}  // namespace quilex

#include "DBusNotificationCenterTest.moc"
