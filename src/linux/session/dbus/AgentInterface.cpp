#include "linux/session/dbus/AgentInterface.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QStringList>

namespace quilex {

namespace {

using Dictionary = QMap<QString, QString>;
using Dictionaries = QList<QVariantMap>;

// The D-Bus type of a member of the status, and the conversions to and from it.
template <typename Member>
struct Wire;

template <>
struct Wire<std::string> {
  static constexpr const char* kSignature = "s";
  static QVariant write(const std::string& value) { return QString::fromStdString(value); }
  static std::string read(const QVariant& value) { return value.toString().toStdString(); }
};

template <>
struct Wire<std::vector<std::string>> {
  static constexpr const char* kSignature = "as";
  static QVariant write(const std::vector<std::string>& values) {
    QStringList list;
    for (const std::string& value : values) {
      list.append(QString::fromStdString(value));
    }
    return list;
  }
  static std::vector<std::string> read(const QVariant& value) {
    std::vector<std::string> values;
    for (const QString& each : value.toStringList()) {
      values.push_back(each.toStdString());
    }
    return values;
  }
};

template <>
struct Wire<bool> {
  static constexpr const char* kSignature = "b";
  static QVariant write(bool value) { return value; }
  static bool read(const QVariant& value) { return value.toBool(); }
};

template <>
struct Wire<double> {
  static constexpr const char* kSignature = "d";
  static QVariant write(double value) { return value; }
  static double read(const QVariant& value) { return value.toDouble(); }
};

template <>
struct Wire<std::int32_t> {
  static constexpr const char* kSignature = "i";
  static QVariant write(std::int32_t value) { return value; }
  static std::int32_t read(const QVariant& value) { return value.toInt(); }
};

template <>
struct Wire<std::uint32_t> {
  static constexpr const char* kSignature = "u";
  static QVariant write(std::uint32_t value) { return value; }
  static std::uint32_t read(const QVariant& value) { return value.toUInt(); }
};

template <>
struct Wire<std::int64_t> {
  static constexpr const char* kSignature = "x";
  static QVariant write(std::int64_t value) { return QVariant::fromValue(qlonglong{value}); }
  static std::int64_t read(const QVariant& value) { return value.toLongLong(); }
};

template <>
struct Wire<std::map<std::string, std::string>> {
  static constexpr const char* kSignature = "a{ss}";
  static QVariant write(const std::map<std::string, std::string>& values) {
    Dictionary dictionary;
    for (const auto& [key, value] : values) {
      dictionary[QString::fromStdString(key)] = QString::fromStdString(value);
    }
    return QVariant::fromValue(dictionary);
  }
  static std::map<std::string, std::string> read(const QVariant& value) {
    std::map<std::string, std::string> values;
    const auto dictionary = qdbus_cast<Dictionary>(value);
    for (auto entry = dictionary.begin(); entry != dictionary.end(); ++entry) {
      values[entry.key().toStdString()] = entry.value().toStdString();
    }
    return values;
  }
};

template <>
struct Wire<std::vector<DisplayStatus>> {
  static constexpr const char* kSignature = "aa{sv}";
  static QVariant write(const std::vector<DisplayStatus>& displays) {
    Dictionaries list;
    for (const DisplayStatus& each : displays) {
      list.append(QVariantMap{{"Name", QString::fromStdString(each.name)},
                              {"X", each.frame.x},
                              {"Y", each.frame.y},
                              {"Width", each.frame.width},
                              {"Height", each.frame.height},
                              {"Scale", each.scale},
                              {"RefreshRate", each.refreshRate}});
    }
    return QVariant::fromValue(list);
  }
  static std::vector<DisplayStatus> read(const QVariant& value) {
    std::vector<DisplayStatus> displays;
    for (const QVariantMap& each : qdbus_cast<Dictionaries>(value)) {
      const auto number = [&](const char* key) { return each.value(key).toDouble(); };
      displays.push_back({each.value("Name").toString().toStdString(),
                          {number("X"), number("Y"), number("Width"), number("Height")},
                          number("Scale"),
                          number("RefreshRate")});
    }
    return displays;
  }
};

template <typename Pointer>
struct MemberOf;
template <typename Member>
struct MemberOf<Member AgentStatus::*> {
  using Type = Member;
};

template <auto Pointer>
AgentProperty property(const char* name, AgentProperty::Change change) {
  using Type = Wire<typename MemberOf<decltype(Pointer)>::Type>;
  return {name, Type::kSignature, change, [](const AgentStatus& status) { return Type::write(status.*Pointer); },
          [](AgentStatus& status, const QVariant& value) { status.*Pointer = Type::read(value); }};
}

}  // namespace

const std::vector<AgentProperty>& agentProperties() {
  using Status = AgentStatus;
  using enum AgentProperty::Change;
  qDBusRegisterMetaType<Dictionary>();
  qDBusRegisterMetaType<Dictionaries>();
  static const std::vector<AgentProperty> table{
      property<&Status::version>("Version", never),
      property<&Status::processId>("ProcessId", never),
      property<&Status::libraries>("Libraries", signalled),
      property<&Status::desktop>("Desktop", never),
      property<&Status::sessionType>("SessionType", never),
      property<&Status::backend>("Backend", never),
      property<&Status::backendReason>("BackendReason", never),
      property<&Status::renderer>("Renderer", never),
      property<&Status::rendererReason>("RendererReason", never),
      property<&Status::gpu>("Gpu", never),
      property<&Status::settingsFile>("SettingsFile", never),
      property<&Status::libraryFile>("LibraryFile", never),
      property<&Status::serviceAddress>("ServiceAddress", never),
      property<&Status::placement>("Placement", signalled),
      property<&Status::placementAdvice>("PlacementAdvice", signalled),
      property<&Status::displays>("Displays", signalled),
      property<&Status::statusItem>("StatusItem", signalled),
      property<&Status::isOpen>("IsOpen", signalled),
      property<&Status::isPlaying>("IsPlaying", signalled),
      property<&Status::standsStillBecause>("StandsStillBecause", signalled),
      property<&Status::videoSign>("VideoSign", signalled),
      property<&Status::videoTitle>("VideoTitle", signalled),
      property<&Status::videoState>("VideoState", signalled),
      property<&Status::lastFailure>("LastFailure", signalled),
      property<&Status::decoder>("Decoder", signalled),
      property<&Status::hardwareDecoder>("HardwareDecoder", signalled),
      property<&Status::videoWidth>("VideoWidth", signalled),
      property<&Status::videoHeight>("VideoHeight", signalled),
      property<&Status::monitorArrange>("MonitorArrange", signalled),
      property<&Status::screenIndex>("ScreenIndex", signalled),
      property<&Status::playMode>("PlayMode", signalled),
      property<&Status::volume>("Volume", signalled),
      property<&Status::isMuted>("IsMuted", signalled),
      property<&Status::libraryVideos>("LibraryVideos", signalled),
      property<&Status::serviceAnswer>("ServiceAnswer", signalled),
      property<&Status::serviceAnswered>("ServiceAnswered", signalled),
      property<&Status::serviceAnswerTime>("ServiceAnswerTime", signalled),
      property<&Status::framesShown>("FramesShown", silent),
      property<&Status::framesDropped>("FramesDropped", silent),
  };
  return table;
}

std::string describeAgentInterface() {
  const auto annotation = [](AgentProperty::Change change) {
    switch (change) {
      case AgentProperty::Change::never:
        return "const";
      case AgentProperty::Change::signalled:
        return "true";
      case AgentProperty::Change::silent:
        break;
    }
    return "false";
  };
  std::string text = std::string(R"(  <interface name=")") + AgentInterface::kName + "\">\n";
  for (const AgentProperty& each : agentProperties()) {
    text += std::string(R"(    <property name=")") + each.name + R"(" type=")" + each.signature + R"(" access="read">
      <annotation name="org.freedesktop.DBus.Property.EmitsChangedSignal" value=")" +
            annotation(each.change) + R"("/>
    </property>
)";
  }
  return text + "  </interface>\n";
}

}  // namespace quilex
