"""Compares each table of docs/contract.md with what the programs do, in both directions."""

import pathlib
import re
import sqlite3
import unittest

import dbus.bus
from installed_test import InstalledJourney

from session import SOURCE, wait_for

TYPES = {int: "integer", float: "real", bool: "boolean", str: "string"}


def read_tables():
    """The rows of each table by its first heading, without backquotes."""
    tables, rows = {}, None
    for line in (SOURCE / "docs/contract.md").read_text().splitlines():
        cells = [cell.strip().replace("`", "") for cell in line.strip("|").split("|")]
        if not line.startswith("|"):
            rows = None
        elif rows is None:
            rows = tables.setdefault((cells[0], len(cells)), [])
        elif set(line) != set("|-"):
            rows.append(cells)
    return tables


class Contract(InstalledJourney):
    def setUp(self):
        self.tables = read_tables()
        self.begin(("moving", "file://" + self.moving), CurrentVideoSign="moving")
        self.session.agent_program = self.prefix / "bin/quilexhelper"
        self.quilex = self.prefix / "bin/quilex"

    def test_settings(self):
        documented = {row[0]: row[1:] for row in self.tables["key", 6]}
        own = {row[0] for row in self.tables["key", 4]}
        keys = re.findall(r'"([A-Za-z]+/?)"', (SOURCE / "src/settings/SettingsKeys.h").read_text())
        self.assertEqual(set(documented) | {key.removesuffix("SIGN") for key in own}, set(keys))

        text = self.call(self.quilex, "set", "--help").partition("Settings:\n")[2]
        explained = [re.split(r" {2,}", line.strip()) for line in text.strip().splitlines()]
        settable = [[key, row[1], row[4]] for key, row in documented.items() if key not in ("LibraryWasEmptied", "uuid")]
        self.assertEqual(settable, explained)
        # In a home folder without settings.
        self.session.settings_file.unlink()
        shown = dict(line.split(" ", 1) for line in self.call(self.quilex, "get").splitlines())
        absent = {key: row[2].removesuffix(", stored").replace("absent", "") for key, row in documented.items()}
        self.assertEqual(shown, {key: absent[key] for key, _, _ in settable})

        self.session.start_agent()
        stored = {key for key, row in documented.items() if row[2].endswith("stored")}
        wait_for(lambda: stored <= self.session.settings().keys(), lambda: f"{stored} in {self.session.settings()}")
        wait_for(lambda: "CurrentVideoSign" in self.session.settings(), "the agent's choice")
        self.assertEqual(self.session.settings().keys(), stored | {"CurrentVideoSign"})
        values = {"CurrentVideoSign": "moving", "Volume": "0.25"}
        for key, row in documented.items():
            if [key, row[1], row[4]] in settable:
                self.call(self.quilex, "set", key, values.get(key, "true" if row[0] == "boolean" else "1"))
        for key, value in self.session.settings().items():
            self.assertEqual((key, TYPES[type(value)]), (key, documented[key][0]))
        self.assertEqual(self.session.end_agent(), 0)

    def test_library(self):
        with sqlite3.connect(":memory:") as database:
            database.executescript((SOURCE / "resources/LocalVideos.sql").read_text())
            columns = [[name, kind.lower()] for _, name, kind, *_ in database.execute("pragma table_info(LocalVideos)")]
            self.assertEqual(database.execute("select count(*) from sqlite_master where type = 'table'").fetchall(), [(1,)])
        self.assertEqual([row[:2] for row in self.tables["column", 3]], columns)

    def test_notifications_and_files(self):
        names = dict(self.tables["what", 2])
        agent, path, interface, signal, _ = names.values()
        heard = self.session.hear()
        self.session.start_agent()
        bus = dbus.bus.BusConnection(self.session.environment["DBUS_SESSION_BUS_ADDRESS"])
        wait_for(lambda: bus.name_has_owner(agent), "the agent's name")
        self.call(self.quilex, "import", self.green)
        files = {row[0]: row[0].replace("SIGN", "*") for row in self.tables["file", 3]}
        folders = {"$XDG_CONFIG_HOME": "config", "$XDG_DATA_HOME": "data"}
        for variable, folder in folders.items():
            files = {name: pattern.replace(variable, folder) for name, pattern in files.items()}
        found = lambda: {name: set(self.session.folder.glob(pattern)) for name, pattern in files.items()}
        wait_for(lambda: all(found().values()), lambda: str(found()))
        self.assertEqual(self.session.end_agent(), 0)
        made = {each for folder in folders.values() for each in (self.session.folder / folder).rglob("*") if each.is_file()}
        self.assertEqual(made, set().union(*found().values()))

        posted = [row[0] for row in self.tables["notification", 3]]
        wait_for(lambda: f'"{posted[-1]}"' in heard.read_text(), "the agent's end")
        signals = re.findall(r"path=(\S+); interface=(\S+); member=(Po\S+)\n *string \"(.*)\"", heard.read_text())
        self.assertEqual(set(signals), {(path, interface, signal, name) for name in posted})
        entries = [pathlib.Path(each).stem for each in (self.prefix / "share/applications").iterdir()]
        self.assertEqual(sorted(entries), sorted([agent, names['the desktop entry that the menu\'s "Main Window" starts']]))

    def test_what_people_are_said_to_see_is_what_the_programs_say(self):
        pieces = [path.read_text() for path in (SOURCE / "src").rglob("*.cpp")]
        said = re.sub(r'"\s*\n\s*"', "", "\n".join(pieces))
        for phrase in re.findall(r'"([^"\n]+)"', (SOURCE / "docs/troubleshooting.md").read_text()):
            self.assertIn(phrase, said)


if __name__ == "__main__":
    unittest.main(verbosity=2)
