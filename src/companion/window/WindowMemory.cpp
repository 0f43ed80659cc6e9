#include "companion/window/WindowMemory.h"

#include <QFile>

#include "base/PrivateFiles.h"
#include "linux/session/bundle/LinuxBundle.h"

namespace quilex {

namespace {

QString memoryFile() {
  const auto folder = configHome() / "com.dravo.quilex.macOS";
  // Made private like the folders beside it; where that fails, nothing is remembered.
  static_cast<void>(createPrivateFolder(folder));
  return QFile::decodeName((folder / "window.ini").c_str());
}

}  // namespace

WindowMemory::WindowMemory() : file_(memoryFile(), QSettings::IniFormat) {}

}  // namespace quilex
