#include "companion/Doctor.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <openssl/crypto.h>

extern "C" {
#include <libavutil/avutil.h>
}

#include <QDir>
#include <QSysInfo>
#include <cstdlib>
#include <fstream>

#include "companion/Diagnosis.h"
#include "companion/Text.h"
#include "library/LibraryFile.h"
#include "linux/session/bundle/LinuxBundle.h"
#include "linux/session/dbus/BusConnection.h"
#include "platform/AppInfo.h"

namespace quilex {

namespace {

std::string variable(const char* name) {
  const char* const value = std::getenv(name);
  return value != nullptr ? value : "";
}

std::string processName(std::uint32_t process) {
  std::string name;
  std::getline(std::ifstream("/proc/" + std::to_string(process) + "/comm"), name);
  return name.empty() ? "process " + std::to_string(process) : name;
}

Facts gatherFacts() {
  const AppInfo info(LinuxBundle::main().environment());
  Facts facts;
  facts.version = info.displayVersion();
  facts.system = QSysInfo::prettyProductName().toStdString();
  facts.kernel = (QSysInfo::kernelType() + " " + QSysInfo::kernelVersion() + " " + QSysInfo::currentCpuArchitecture())
                     .toStdString();
  facts.libraries = {{"FFmpeg", av_version_info()},
                     {"OpenSSL", OpenSSL_version(OPENSSL_VERSION_STRING)},
                     {"Qt", qVersion()},
                     {"SQLite", SQLite::getLibVersion()}};
  facts.desktop = variable("XDG_CURRENT_DESKTOP");
  facts.sessionType = variable("XDG_SESSION_TYPE");
  facts.settings = checkSettings(settingsFile());
  facts.library = checkLibrary(libraryFile(info.location(SearchPathDirectory::applicationSupport)));
  facts.agent = askAgent(kAgentPatience);
  if (!std::holds_alternative<NoAgent>(facts.agent)) {
    for (const std::uint32_t process : statusItemHosts(kAgentPatience)) {
      facts.statusItemHosts.push_back(processName(process));
    }
  }
  return facts;
}

}  // namespace

Outcome doctorCommand(ReportForm form) {
  const Disposable silentBuses = hideSilentBuses(kAgentPatience, [](BusKind) {});
  const auto report = makeReport(gatherFacts(), QDir::homePath().toStdString());
  if (form == ReportForm::json) {
    printLine(report.dump(2, ' ', true));
    return {};
  }
  for (const std::string& line : reportLines(report)) {
    printLine(line);
  }
  return {};
}

}  // namespace quilex
