"""Processor time of playing on Wayland, of the agent and its compositor, compared with decoding alone and a peer."""

import time

from measure import SECONDS, WARM_UP, Desktop, clip, processor_seconds, side_by_side
from session import WaylandSession

SCALER = ["--sws-fast=yes", "--sws-allow-zimg=no", "--sws-scaler=bilinear"]
PAIRS = (
    ("one monitor / decoding alone", "one", "floor", 1.15),
    ("one monitor / peer on one", "one", "peer", 1.0),
    ("two mirrored / one", "two", "one", 1.06),
)


class WaylandDesktop(Desktop, WaylandSession):
    def start_peer(self, clip_path):
        return self.start_mpv(clip_path, "--vo=wlshm", "--fs", *SCALER)

    def play(self, what, clip_path):
        monitors = 2 if what == "two" else 1
        self.set_monitor_count(monitors)
        if what in ("floor", "peer"):
            return {"floor": self.start_floor, "peer": self.start_peer}[what](clip_path)
        return self.start_ours(clip_path, monitors)


def measured(desktops, kinds, clip_path):
    """Processor seconds of programs on two desktops at the same time, and of both compositors."""
    programs = [desktop.play(kind, clip_path) for desktop, kind in zip(desktops, kinds)]
    processes = [*programs, *(desktop.desktop.server for desktop in desktops)]
    time.sleep(WARM_UP)
    before = [processor_seconds(each) for each in processes]
    time.sleep(SECONDS)
    seconds = [processor_seconds(each) - start for each, start in zip(processes, before)]
    for desktop, program in zip(desktops, programs):
        desktop.stop(program)
    return seconds[:2], seconds[2:]


def measure(context):
    rows = []
    unit = f"s in {SECONDS} s"
    desktops = []
    try:
        desktops += [WaylandDesktop(context, 2), WaylandDesktop(context, 2)]
        for name in ("heavy", "light"):
            path = clip(name, context.clips)
            for figure, ours, reference, target in PAIRS:
                rounds = [measured(desktops, (ours, reference), path) for _ in range(context.rounds)]
                programs, compositors = zip(*rounds)
                figure = f"{figure}, {name} clip"
                rows.append(side_by_side(f"Wayland: {figure}", programs, target, unit))
                if reference != "floor":
                    # No target, because the compositor draws too.
                    figure = f"Wayland: the compositor's own time, {figure}"
                    rows.append(side_by_side(figure, compositors, float("inf"), unit))
    finally:
        for desktop in desktops:
            desktop.close()
    return rows
