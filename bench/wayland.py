"""Processor time of playing on Wayland: the agent's beside decoding alone and a peer, and the compositor's beside it."""

import time

from measure import SECONDS, WARM_UP, Desktop, clip, compared, processor_seconds
from session import WaylandSession

SCALER = ["--sws-fast=yes", "--sws-allow-zimg=no", "--sws-scaler=bilinear"]


class WaylandDesktop(Desktop, WaylandSession):
    def start_peer(self, clip_path):
        return self.start_mpv(clip_path, "--vo=wlshm", "--fs", *SCALER)

    def spent(self, program):
        """Processor seconds of the program and of the compositor, after which the program is ended."""
        processes = program, self.desktop.server
        time.sleep(WARM_UP)
        before = [processor_seconds(each) for each in processes]
        time.sleep(SECONDS)
        after = [processor_seconds(each) for each in processes]
        self.stop(program)
        return [end - start for start, end in zip(before, after)]


def measure(context):
    rows = []
    unit = f"s in {SECONDS} s"
    desktop = WaylandDesktop(context, 2)
    try:
        for name in ("heavy", "light"):
            path = clip(name, context.clips)
            starts = {
                "floor": (1, lambda: desktop.start_floor(path)),
                "one": (1, lambda: desktop.start_ours(path, 1)),
                "peer": (1, lambda: desktop.start_peer(path)),
                "two": (2, lambda: desktop.start_ours(path, 2)),
            }
            results = {each: [] for each in starts}
            for _ in range(context.rounds):
                for each, (monitors, start) in starts.items():
                    desktop.set_monitor_count(monitors)
                    results[each].append(desktop.spent(start()))
            program = lambda each: [seconds for seconds, _ in results[each]]
            compositor = lambda each: [seconds for _, seconds in results[each]]
            add = lambda figure, ours, reference, target: rows.append(
                compared(f"Wayland: {figure}, {name} clip", program(ours), program(reference), target, unit)
            )
            add("one monitor / decoding alone", "one", "floor", 1.15)
            add("one monitor / peer on one", "one", "peer", 1.0)
            add("two mirrored / one", "two", "one", 1.06)
            # No target: what is drawn is drawn by the compositor too.
            for figure, ours, reference in (("one monitor / peer", "one", "peer"), ("two mirrored / one", "two", "one")):
                row = compared("", compositor(ours), compositor(reference), float("inf"), unit)
                row.figure = f"Wayland: the compositor's own time, {figure}, {name} clip"
                rows.append(row)
    finally:
        desktop.close()
    return rows
