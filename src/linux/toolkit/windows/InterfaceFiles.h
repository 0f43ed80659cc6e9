#pragma once

#include <memory>
#include <string>

#include "linux/session/bundle/LinuxBundle.h"
#include "platform/InterfaceWindow.h"

namespace quilex {

/// A `LoadInterfaceFile` over Qt Designer's files in the bundle ("name.ui"), whose outermost widget is a QDialog. They
/// may use the classes of Buttons.h and PictureView.h, and name files of the bundle. The bundle must outlive the
/// window. Needs a QApplication.
std::unique_ptr<InterfaceWindow> loadInterfaceFile(const LinuxBundle& bundle, const std::string& name);

}  // namespace quilex
