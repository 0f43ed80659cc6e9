#include "linux/dbus/AgentInterface.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QStringList>

namespace quilex {

namespace {

using Dictionary = QMap<QString, QString>;
using Dictionaries = QList<QVariantMap>;

// A type of a member, how D-Bus calls its type, and the way there and back.
template <typename Member>
struct Wire {
  static QVariant write(const Member& value) { return QVariant::fromValue(value); }
  static Member read(const QVariant& value) { return value.value<Member>(); }
};

template <>
struct Wire<std::string> {
  static constexpr const char* kSignature = "s";
  static QVariant write(const std::string& value) { return QString::fromStdString(value); }
  static std::string read(const QVariant& value) { return value.toString().toStdString(); }
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
AgentProperty property(const char* name, AgentProperty::Signals signals) {
  using Type = Wire<typename MemberOf<decltype(Pointer)>::Type>;
  return {name, Type::kSignature, signals, [](const AgentStatus& status) { return Type::write(status.*Pointer); },
          [](AgentStatus& status, const QVariant& value) { status.*Pointer = Type::read(value); }};
}

}  // namespace

const std::vector<AgentProperty>& agentProperties() {
  using Status = AgentStatus;
  using enum AgentProperty::Signals;
  qDBusRegisterMetaType<Dictionary>();
  qDBusRegisterMetaType<Dictionaries>();
  static const std::vector<AgentProperty> table{
      property<&Status::version>("Version", constant),
      property<&Status::processId>("ProcessId", constant),
      property<&Status::libraries>("Libraries", changes),
      property<&Status::desktop>("Desktop", constant),
      property<&Status::sessionType>("SessionType", constant),
      property<&Status::backend>("Backend", constant),
      property<&Status::backendReason>("BackendReason", constant),
      property<&Status::renderer>("Renderer", constant),
      property<&Status::rendererReason>("RendererReason", constant),
      property<&Status::gpu>("Gpu", constant),
      property<&Status::settingsFile>("SettingsFile", constant),
      property<&Status::libraryFile>("LibraryFile", constant),
      property<&Status::serviceAddress>("ServiceAddress", constant),
      property<&Status::displays>("Displays", changes),
      property<&Status::statusItem>("StatusItem", changes),
      property<&Status::isOpen>("IsOpen", changes),
      property<&Status::isPlaying>("IsPlaying", changes),
      property<&Status::videoSign>("VideoSign", changes),
      property<&Status::videoTitle>("VideoTitle", changes),
      property<&Status::videoState>("VideoState", changes),
      property<&Status::lastFailure>("LastFailure", changes),
      property<&Status::decoder>("Decoder", changes),
      property<&Status::hardwareDecoder>("HardwareDecoder", changes),
      property<&Status::videoWidth>("VideoWidth", changes),
      property<&Status::videoHeight>("VideoHeight", changes),
      property<&Status::videoFrameRate>("VideoFrameRate", changes),
      property<&Status::monitorArrange>("MonitorArrange", changes),
      property<&Status::screenIndex>("ScreenIndex", changes),
      property<&Status::playMode>("PlayMode", changes),
      property<&Status::volume>("Volume", changes),
      property<&Status::isMuted>("IsMuted", changes),
      property<&Status::libraryVideos>("LibraryVideos", changes),
      property<&Status::serviceAnswer>("ServiceAnswer", changes),
      property<&Status::serviceAnswered>("ServiceAnswered", changes),
      property<&Status::serviceAnswerTime>("ServiceAnswerTime", changes),
      property<&Status::framesShown>("FramesShown", never),
      property<&Status::framesDropped>("FramesDropped", never),
  };
  return table;
}

std::string describeAgentInterface() {
  const auto annotation = [](AgentProperty::Signals signals) {
    switch (signals) {
      case AgentProperty::Signals::constant:
        return "const";
      case AgentProperty::Signals::changes:
        return "true";
      case AgentProperty::Signals::never:
        break;
    }
    return "false";
  };
  std::string text = std::string("  <interface name=\"") + AgentInterface::kName + "\">\n";
  for (const AgentProperty& each : agentProperties()) {
    text += std::string("    <property name=\"") + each.name + "\" type=\"" + each.signature + "\" access=\"read\">\n" +
            "      <annotation name=\"org.freedesktop.DBus.Property.EmitsChangedSignal\" value=\"" +
            annotation(each.signals) + "\"/>\n    </property>\n";
  }
  return text + "  </interface>\n";
}

}  // namespace quilex
