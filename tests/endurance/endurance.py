"""Shared by the endurance programs: options, a session whose agent has a memory limit, and the table of results."""

import argparse
import contextlib
import itertools
import json
import math
import os
import pathlib
import random
import signal
import subprocess
import sys
import threading
import time
import traceback

SOURCE = pathlib.Path(__file__).resolve().parents[2]
sys.path[:0] = [str(SOURCE / "tests/e2e"), str(SOURCE / "bench")]
from measure import processor_seconds  # noqa: E402

from session import Session, WaylandSession, make_clip, wait_for  # noqa: E402

# A few frames on an idle machine; beyond this a person would think that the wallpaper is broken.
PICTURE_SECONDS = 10
# Two seconds are promised. The rest is for a busy machine, and for a sanitizer's leak check, which searches all memory.
END_SECONDS = {"release": 3.5, "asan": 10}
# MiB. One frame of 8192x8192 takes 96, and a decoder holds several; more than this would harm small desktops.
# A sanitizer keeps freed memory for a while, and adds a margin to every allocation.
MEMORY_LIMIT = {"release": 1024, "asan": 3072}
# Cores, in addition to what playing took before. Something that spins takes a whole core.
SPINNING = 0.6

MONITORS = ("1280x720", "800x600")
RED, GREEN, BLUE, WHITE = (192, 32, 32), (32, 160, 32), (32, 32, 192), (255, 255, 255)
# A box of each colour in the corners of a moving picture, large enough for the corners of any part that is shown.
QUADRANTS = "testsrc2," + ",".join(
    f"drawbox=x={x}:y={y}:w=300:h=160:c=0x{bytes(colour).hex()}:t=fill"
    for colour, x, y in ((RED, 0, 0), (GREEN, 340, 0), (BLUE, 0, 200), (WHITE, 340, 200))
)


def quadrants(*monitors):
    """Points of a desktop with these monitors, from left to right, and the colours that the clip has there."""
    expected, left = {}, 0
    for width, height in (map(int, monitor.split("x")) for monitor in monitors):
        x, y = width // 5, height // 5
        for colour, point in zip((RED, GREEN, BLUE, WHITE), itertools.product((y, height - y), (x, width - x))):
            expected[left + point[1], point[0]] = colour
        left += width
    return expected


class Watch(threading.Thread):
    """Kills a process that takes more memory than the limit. A limit of the address space does not work with a
    sanitizer, and control groups are not available everywhere."""

    def __init__(self, process, limit):
        super().__init__(daemon=True)
        self.process = process
        self.limit = limit
        self.peak = 0  # MiB
        self.start()

    def run(self):
        with contextlib.suppress(OSError, IndexError):  # when it has ended
            while self.process.returncode is None:
                status = pathlib.Path(f"/proc/{self.process.pid}/status").read_text()
                self.peak = max(self.peak, int(status.split("VmRSS:")[1].split()[0]) / 1024)
                if self.peak > self.limit:
                    self.process.kill()
                time.sleep(0.02)


class Table:
    """The worst value of each figure of each trial with its limit, and everything else that was wrong."""

    def __init__(self):
        self.rows, self.faults, self.lock = {}, {}, threading.Lock()

    def note(self, trial, figure, value, bound, of=""):
        with self.lock:
            runs, worst, _, worst_of = self.rows.get((trial, figure), (0, -math.inf, bound, ""))
            self.rows[trial, figure] = (runs + 1, max(worst, value), bound, of if value > worst else worst_of)
        if of and value > bound:
            self.fault(trial, f"{of}: {value:.1f} {figure}")

    def fault(self, trial, text):
        with self.lock:
            self.faults[trial, text] = self.faults.get((trial, text), 0) + 1

    def print(self):
        print("\n| trial | figure | runs | worst | bound | held |\n|---|---|---|---|---|---|")
        held = not self.faults
        for (trial, figure), (runs, worst, bound, of) in sorted(self.rows.items()):
            verdict = "yes" if worst <= bound else "NO"
            held &= worst <= bound
            print(f"| {trial} | {figure} | {runs} | {worst:.1f}{of and f' ({of})'} | ≤ {bound:g} | {verdict} |")
        for (trial, text), count in self.faults.items():
            print(f"| {trial} | {' '.join(text.split())[:300]} | {count} | | | NO |")
        return held


class Enduring:
    """What a session has here in addition to that of the journeys."""

    def start_agent(self, **variables):
        if self.context.checks_leaks:
            variables.setdefault("LD_PRELOAD", str(self.programs_folder.parent / "lib/keep_modules.so"))
        super().start_agent(**variables)
        self.watch = self.context.watch(self.agent)
        return self.agent

    def end_agent(self, how=signal.SIGTERM):
        """Ends the agent and records how it ended."""
        if self.agent is None:
            return
        begin, bound = time.monotonic(), self.context.end_seconds
        self.agent.send_signal(how)
        try:
            status = self.agent.wait(timeout=2 * bound)
        except subprocess.TimeoutExpired:
            self.agent.kill()
            status = self.agent.wait()
        self.context.note("seconds from SIGTERM to the end", time.monotonic() - begin, bound)
        self.note_end(status, -how if how == signal.SIGKILL else 0)

    def note_end(self, status, expected):
        self.context.note("MiB of memory", self.watch.peak, self.watch.limit)
        self.agent = None
        if status != expected:
            self.context.fault(f"the agent ended with {status}: {self.errors()[-300:]}")

    def check_alive(self):
        status = self.agent.poll()
        if status is not None:
            self.note_end(status, None)
            raise AssertionError("the agent is gone")

    def pixels(self, *points):
        self.check_alive()
        return super().pixels(*points)

    def play(self, *urls, **settings):
        """Makes a library of these videos, and settings that include another program's key."""
        self.make_library(*((f"video{number}", str(url)) for number, url in enumerate(urls)))
        self.write_settings(**{"another": "kept", "Mute": True, "MonitorArrange": 1, **settings})

    def check_settings(self):
        assert self.settings()["another"] == "kept", "a value of another program is lost"

    def settle(self, *monitors):
        """Waits for the right picture, moving."""
        begin = time.monotonic()
        self.wait_for_pixels(quadrants(*(monitors or MONITORS)), f"the picture with {self.settings()}", seconds=PICTURE_SECONDS)
        wait_for(self.moves, "a moving picture")
        self.context.note("seconds until the picture is right", time.monotonic() - begin, PICTURE_SECONDS)

    def processor_share(self, seconds=1):
        begin, before = time.monotonic(), processor_seconds(self.agent)
        time.sleep(seconds)
        return (processor_seconds(self.agent) - before) / (time.monotonic() - begin)


class Context:
    """What a trial gets: the options, and where to record its observations."""

    def __init__(self, program, trial):
        self.options, self.table, self.clips, self.deadline = program.options, program.table, program.clips, program.deadline
        self.trial = trial
        self.end_seconds = END_SECONDS[program.preset]
        self.memory_limit = MEMORY_LIMIT[program.preset]
        self.checks_leaks = program.preset == "asan"

    def note(self, figure, value, bound, of=""):
        self.table.note(self.trial, figure, value, bound, of)

    def fault(self, text):
        self.table.fault(self.trial, text)

    def watch(self, process):
        return Watch(process, self.memory_limit)

    def time_left(self):
        return self.deadline - time.monotonic()

    @contextlib.contextmanager
    def session(self, *monitors):
        kind = WaylandSession if self.options.wayland else Session
        session = type("EnduringSession", (Enduring, kind), {"context": self})(self.options.build, monitors or MONITORS)
        try:
            yield session
        finally:
            session.close()


class Program:
    """Runs trials, which are functions of a context, in turn until the time is over, several in parallel."""

    def __init__(self, description):
        parser = argparse.ArgumentParser(description=description)
        parser.add_argument("--seconds", type=float, default=60, help="after which nothing more is begun (60)")
        parser.add_argument("--wayland", action="store_true", help="on a Wayland desktop instead of an X11 one")
        parser.add_argument("--build", type=pathlib.Path, default=SOURCE / "build/release", help="build/release or build/asan")
        parser.add_argument("--seed", type=int, default=random.randrange(10**6), help="of what is left to chance")
        parser.add_argument("--only", default="", help="a part of the names of the trials to run")
        self.options = parser.parse_args()
        random.seed(self.options.seed)
        self.options.build = self.options.build.resolve()
        self.preset = "asan" if self.options.build.name == "asan" else "release"
        for preset in json.loads((SOURCE / "CMakePresets.json").read_text())["testPresets"]:
            if preset["name"] == self.preset:
                values = preset.get("environment", {}).items()
                os.environ.update({name: value.replace("${sourceDir}", str(SOURCE)) for name, value in values})
        # Freed memory should not count for long.
        os.environ["ASAN_OPTIONS"] = os.environ.get("ASAN_OPTIONS", "") + ":quarantine_size_mb=16"
        self.table = Table()
        self.clips = self.options.build / "endurance"
        self.clips.mkdir(exist_ok=True)

    def clip(self, name, graph, seconds):
        path = self.clips / name
        return path if path.exists() else make_clip(path, graph, seconds)

    def run(self, trials, at_once=1):
        """Exits with 1 if anything was wrong."""
        self.clip("quadrants.mp4", QUADRANTS, 10)
        print(f"{pathlib.Path(sys.argv[0]).name}: {self.preset}, seed {self.options.seed}", flush=True)
        self.deadline = time.monotonic() + self.options.seconds
        chosen = [item for item in trials.items() if self.options.only in item[0]]
        turns = itertools.cycle(chosen)
        lock = threading.Lock()

        def work():
            while time.monotonic() < self.deadline:
                with lock:
                    name, trial = next(turns)
                try:
                    trial(Context(self, name))
                except Exception as failure:  # of whatever kind: the other trials go on
                    traceback.print_exc()
                    self.table.fault(name, f"{type(failure).__name__}: {failure}")

        workers = [threading.Thread(target=work) for _ in chosen[:at_once]]
        for worker in workers:
            worker.start()
        for worker in workers:
            worker.join()
        sys.exit(0 if self.table.print() else 1)
