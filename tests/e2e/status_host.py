"""A template for python-dbusmock: the watcher of status items that a panel runs."""

BUS_NAME = MAIN_IFACE = "org.kde.StatusNotifierWatcher"
MAIN_OBJ = "/StatusNotifierWatcher"
SYSTEM_BUS = False


def load(mock, parameters):  # pylint: disable=unused-argument
    mock.AddProperty(MAIN_IFACE, "IsStatusNotifierHostRegistered", True)
    mock.AddMethod(MAIN_IFACE, "RegisterStatusNotifierItem", "s", "", "")
