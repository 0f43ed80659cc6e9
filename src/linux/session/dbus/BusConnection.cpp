#include "linux/session/dbus/BusConnection.h"

#include <dbus/dbus.h>

#include <QDBusConnection>
#include <algorithm>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "linux/session/dbus/NotificationSignal.h"

namespace quilex {

namespace {

using Clock = std::chrono::steady_clock;

struct Releaser {
  void operator()(DBusConnection* connection) const {
    dbus_connection_close(connection);
    dbus_connection_unref(connection);
  }
  void operator()(DBusMessage* message) const { dbus_message_unref(message); }
  void operator()(DBusPendingCall* call) const {
    dbus_pending_call_cancel(call);
    dbus_pending_call_unref(call);
  }
};

template <typename Type>
using Owned = std::unique_ptr<Type, Releaser>;

const char* addressVariable(BusKind kind) {
  return kind == BusKind::session ? "DBUS_SESSION_BUS_ADDRESS" : "DBUS_SYSTEM_BUS_ADDRESS";
}

// The address that the reference implementation would use, except that no bus is started (D-Bus Specification,
// "Well-known Message Bus Instances"). Empty if there is none.
std::string busAddress(BusKind kind) {
  const QByteArray address = qgetenv(addressVariable(kind));
  if (!address.isEmpty()) {
    return address.toStdString();
  }
  if (kind == BusKind::system) {
    return "unix:path=/var/run/dbus/system_bus_socket";
  }
  const QByteArray runtime = qgetenv("XDG_RUNTIME_DIR");
  return runtime.isEmpty() ? std::string() : "unix:path=" + runtime.toStdString() + "/bus";
}

Owned<DBusConnection> openConnection(BusKind kind) {
  const std::string address = busAddress(kind);
  Owned<DBusConnection> connection;
  if (!address.empty()) {
    connection.reset(dbus_connection_open_private(address.c_str(), nullptr));
  }
  if (connection) {
    dbus_connection_set_exit_on_disconnect(connection.get(), 0);
  }
  return connection;
}

enum class Answer { came, none, disconnected };

// Calls a method of the bus itself and waits for the answer. The library's blocking calls would wait forever for a
// connection to be authenticated.
Answer callBus(DBusConnection* bus, const char* interface, const char* method, Clock::time_point latest) {
  const Owned<DBusMessage> message(dbus_message_new_method_call(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, interface, method));
  DBusPendingCall* sent = nullptr;
  if (!message || dbus_connection_send_with_reply(bus, message.get(), &sent, DBUS_TIMEOUT_INFINITE) == 0 ||
      sent == nullptr) {
    return Answer::disconnected;
  }
  const Owned<DBusPendingCall> call(sent);
  while (dbus_pending_call_get_completed(call.get()) == 0) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(latest - Clock::now());
    if (left.count() <= 0) {
      return Answer::none;
    }
    dbus_connection_read_write_dispatch(bus, static_cast<int>(left.count()));
  }
  return dbus_connection_get_is_connected(bus) != 0 ? Answer::came : Answer::disconnected;
}

Answer sayHello(DBusConnection* bus, Clock::time_point latest) {
  return callBus(bus, DBUS_INTERFACE_DBUS, "Hello", latest);
}

bool isSilent(BusKind kind, std::chrono::milliseconds patience) {
  const auto connection = openConnection(kind);
  return connection && sayHello(connection.get(), Clock::now() + patience) == Answer::none;
}

}  // namespace

Disposable hideSilentBuses(std::chrono::milliseconds patience, const std::function<void(BusKind)>& silent) {
  struct Hidden {
    BusKind kind;
    std::optional<QByteArray> address;
  };
  std::vector<Hidden> hidden;
  for (const BusKind kind : {BusKind::session, BusKind::system}) {
    if (isSilent(kind, patience)) {
      silent(kind);
      const char* const variable = addressVariable(kind);
      hidden.push_back({kind, qEnvironmentVariableIsSet(variable) ? std::optional(qgetenv(variable)) : std::nullopt});
      qputenv(variable, "unix:path=/nonexistent");
    }
  }
  return Disposable([hidden] {
    for (const auto& [kind, address] : hidden) {
      // The toolkit remembers the result of this first look.
      kind == BusKind::session ? QDBusConnection::sessionBus() : QDBusConnection::systemBus();
      // The programs that the agent starts get the real address.
      address ? qputenv(addressVariable(kind), *address) : qunsetenv(addressVariable(kind));
    }
  });
}

void postSeparately(const std::string& name, std::chrono::milliseconds patience) {
  const auto latest = Clock::now() + patience;
  const auto connection = openConnection(BusKind::session);
  if (!connection || sayHello(connection.get(), latest) != Answer::came) {
    return;
  }
  const Owned<DBusMessage> message(
      dbus_message_new_signal(NotificationSignal::kPath, NotificationSignal::kInterface, NotificationSignal::kMember));
  const char* const text = name.c_str();
  const char* const object = "";
  DBusMessageIter arguments;
  DBusMessageIter information;
  dbus_message_iter_init_append(message.get(), &arguments);
  dbus_message_iter_append_basic(&arguments, DBUS_TYPE_STRING, &text);
  dbus_message_iter_append_basic(&arguments, DBUS_TYPE_STRING, &object);
  dbus_message_iter_open_container(&arguments, DBUS_TYPE_ARRAY, "{sv}", &information);
  dbus_message_iter_close_container(&arguments, &information);
  dbus_connection_send(connection.get(), message.get(), nullptr);
  // The bus handles one sender's messages in order.
  callBus(connection.get(), DBUS_INTERFACE_PEER, "Ping", latest);
}

}  // namespace quilex
