#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/Menu.h"

namespace quilex {

/// The agent's item in the panel's status area, which appears with the panel. Destroying it removes it. Main thread.
class StatusItem {
 public:
  virtual ~StatusItem() = default;
  /// Shows the bundle's image of that name as a template: its shape in the panel's colour. Nothing changes if the image
  /// is missing.
  virtual void setTemplateImage(const std::string& name) = 0;
  /// Sets the menu that the item opens, or none. What changes in the menu is shown at once.
  virtual void setMenu(std::shared_ptr<Menu> menu) = 0;
};

using StatusItemFactory = std::function<std::unique_ptr<StatusItem>()>;

}  // namespace quilex
