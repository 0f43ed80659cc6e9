#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/Menu.h"

namespace quilex {

/// The agent's item in the panel's status area. It follows its menu as that changes, also while it is open. Without a
/// panel nothing is seen of it, until one comes. Destroying it takes it away. Main thread.
class StatusItem {
 public:
  virtual ~StatusItem() = default;
  /// Shows the bundle's image of that name as a template: its shape in the panel's own colour. An image that is
  /// missing leaves the item as it was.
  virtual void setTemplateImage(const std::string& name) = 0;
  /// The menu that the item opens, or none.
  virtual void setMenu(std::shared_ptr<Menu> menu) = 0;
};

using StatusItemFactory = std::function<std::unique_ptr<StatusItem>()>;

}  // namespace quilex
