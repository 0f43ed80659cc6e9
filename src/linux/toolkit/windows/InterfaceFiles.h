#pragma once

#include <memory>
#include <string>

#include "linux/session/bundle/LinuxBundle.h"
#include "platform/InterfaceWindow.h"

namespace quilex {

/// A `LoadInterfaceFile` over the bundle's Qt Designer files ("name.ui"), whose outermost widget is a QDialog. They may
/// use the classes of Buttons.h and ImageView.h and refer to files of the bundle, which must outlive the window. Needs
/// a QApplication.
std::unique_ptr<InterfaceWindow> loadInterfaceFile(const LinuxBundle& bundle, const std::string& name);

}  // namespace quilex
