"""What assistive technology sees of a program: its accessible objects, over AT-SPI on D-Bus."""

import dbus
import dbus.bus

from session import wait_for

PREFIX = "org.a11y.atspi."
ROOT = "/org/a11y/atspi/accessible/root"


class Accessible:
    def __init__(self, bus, name, path):
        self.bus, self.owner, self.path = bus, name, path
        self.object = bus.get_object(name, path, introspect=False)

    def call(self, interface, method, *arguments, signature=None):
        return self.object.get_dbus_method(method, PREFIX + interface)(*arguments, signature=signature)

    def get(self, interface, name):
        properties = dbus.Interface(self.object, "org.freedesktop.DBus.Properties")
        return properties.Get(PREFIX + interface, name)

    @property
    def name(self):
        return str(self.get("Accessible", "Name"))

    @property
    def role(self):
        return str(self.call("Accessible", "GetRoleName"))

    def states(self):
        """Numbers of AT-SPI's states; 4 is checked, 8 enabled, 12 focused, 25 showing."""
        low, high = self.call("Accessible", "GetState")
        return {bit for bit in range(64) if (int(low) | int(high) << 32) >> bit & 1}

    def child_count(self):
        return int(self.get("Accessible", "ChildCount"))

    def child(self, index):
        name, path = self.call("Accessible", "GetChildAtIndex", dbus.Int32(index))
        return Accessible(self.bus, name, path)

    def children(self):
        return [Accessible(self.bus, name, path) for name, path in self.call("Accessible", "GetChildren")]

    def tree(self, most=400):
        """All objects below; of an object with many children only the first ones."""
        for index in range(min(self.child_count(), most)):
            child = self.child(index)
            yield child
            yield from child.tree(most)

    def press(self):
        self.call("Action", "DoAction", dbus.Int32(0))

    def extents(self):
        return tuple(map(int, self.call("Component", "GetExtents", dbus.UInt32(0))))

    def middle(self):
        x, y, width, height = self.extents()
        return x + width // 2, y + height // 2

    def value(self):
        return float(self.get("Value", "CurrentValue"))


class AccessibleSession:
    """Finds programs of a session, whose environment needs the session's bus, and QT_LINUX_ACCESSIBILITY_ALWAYS_ON."""

    def __init__(self, session):
        address = dbus.bus.BusConnection(session.environment["DBUS_SESSION_BUS_ADDRESS"])
        launcher = address.get_object("org.a11y.Bus", "/org/a11y/bus")
        self.bus = dbus.bus.BusConnection(str(launcher.GetAddress(dbus_interface="org.a11y.Bus")))
        self.registry = Accessible(self.bus, "org.a11y.atspi.Registry", ROOT)

    def application(self, name):
        def find():
            return next((each for each in self.registry.children() if each.name == name), None)

        return wait_for(find, f"the program {name}")


def names(root, role):
    """The names of all objects of that role; none if the tree changed while it was read."""
    try:
        return [each.name for each in root.tree(60) if each.role == role]
    except dbus.DBusException:
        return []


def find(root, role, name):
    """The object below root with that role and a name that begins so; waits for it."""

    def look():
        try:
            return next((each for each in root.tree() if each.role == role and each.name.startswith(name)), None)
        except dbus.DBusException:
            return None  # the tree changed while it was read

    return wait_for(look, f'the {role} "{name}"')
