#!/usr/bin/env python3
"""Makes a program's manual page from its --help, for all its commands, and from a supplement with the rest: a line for
the section NAME, and further sections in the language of man(7).
   make_manual.py PROGRAM SUPPLEMENT PAGE"""

import os
import re
import subprocess
import sys

HEADINGS = ("positionals", "options", "subcommands")


def ask(program, *arguments):
    # Works without a display, and without the leak check of sanitizers.
    environment = {key: value for key, value in os.environ.items() if key not in ("DISPLAY", "WAYLAND_DISPLAY")}
    environment["ASAN_OPTIONS"] = "detect_leaks=0"
    done = subprocess.run([program, *arguments], env=environment, capture_output=True, text=True, timeout=60, check=False)
    if done.returncode != 0 or not done.stdout.strip():
        sys.exit(f"{program} {' '.join(arguments)} says nothing: {done.stderr.strip()}")
    return done.stdout.strip("\n")


class Help:
    """A help text: description, usage, lists of names with their meanings, and the rest unchanged."""

    def __init__(self, text):
        self.about, self.usage, self.rest = "", "", []
        self.lists = {heading: [] for heading in HEADINGS}
        entries = None
        for line in text.splitlines():
            heading = line.rstrip(":").lower()
            entry = re.match(r" {2}(\S.*?)(?: {2,}(.*))?$", line)
            if line.lower().startswith("usage:"):
                self.usage = line.split(":", 1)[1].strip()
            elif not self.usage:
                self.about = f"{self.about} {line.strip()}".strip()
            elif line.endswith(":") and heading in HEADINGS and not self.rest:
                entries = self.lists[heading]
            elif entries is None:
                self.rest += [line] if line or self.rest else []
            elif not line:
                entries = None
            elif entry:
                name = entry[1] if entries is self.lists["options"] else re.sub(r" (TEXT|REQUIRED)\b", "", entry[1])
                entries.append([name.replace(" ...", "..."), entry[2] or ""])
            else:
                entries[-1][1] = f"{entries[-1][1]} {line.strip()}".strip()


def roff(text):
    text = text.replace("\\", "\\e").replace("-", "\\-")
    return "\\&" + text if text.startswith((".", "'")) else text


def terms(entries):
    return [part for name, meaning in entries for part in (".TP", f".B {roff(name)}", roff(meaning))]


def verbatim(lines):
    return [".PP", ".nf", *map(roff, lines), ".fi"] if lines else []


def table(lines):
    """Lines of two or three columns as terms, their values if there are any, and their meanings."""
    rows = [re.fullmatch(r" {2}(\S+) {2,}(?:(\S.*?) {2,})?(\S.*)", line) for line in lines]
    return terms([(row[1], f"{row[2]}: {row[3]}" if row[2] else row[3]) for row in rows]) if all(rows) else verbatim(lines)


def make_page(program, brief, supplement):
    name = os.path.basename(program)
    version = ask(program, "--version").removeprefix(name).strip()
    overview = Help(ask(program, "--help"))
    page = [f'.TH {name.upper()} 1 "" "{name} {version}" "User Commands"', ".SH NAME", rf"{name} \- {brief}"]
    page += [".SH SYNOPSIS", f".B {roff(overview.usage)}", ".SH DESCRIPTION", roff(overview.about)]
    # A list with its own heading becomes a section, shared by all commands whose help ends with it.
    sections = {}

    def rest(text):
        if text.rest and text.rest[0].endswith(":"):
            sections[".SH " + text.rest[0].rstrip(":").upper()] = table(text.rest[1:])
            return []
        return [".PP", *map(roff, text.rest)] if text.rest else []

    page += rest(overview) + [".SH OPTIONS", *terms(overview.lists["options"])]
    page += [".SH COMMANDS"] if overview.lists["subcommands"] else []
    for command, _ in overview.lists["subcommands"]:
        text = Help(ask(program, command, "--help"))
        options = [entry for entry in text.lists["options"] if "--help" not in entry[0]]
        page += [f".SS {roff(text.usage if options else text.usage.replace(' [OPTIONS]', ''))}", roff(text.about)]
        page += terms(text.lists["positionals"] + options) + rest(text)
    for heading, lines in sections.items():
        page += [heading, *lines]
        # The supplement may continue the last section.
        supplement = supplement.removeprefix(heading + "\n")
    return "\n".join(page) + "\n" + supplement


def main():
    program, supplement, target = sys.argv[1:]
    with open(supplement, encoding="utf-8") as file:
        brief, rest = file.read().split("\n", 1)
    page = make_page(program, brief, rest.lstrip("\n"))
    with open(target, "w", encoding="utf-8") as file:
        file.write(page)


main()
