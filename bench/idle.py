"""The cost of a wallpaper that does not move: paused, and closed."""

import ctypes
import os
import time

from measure import Desktop, Row, clip, processor_seconds, spent, wait_for, wakeups

IN_OPEN, IN_NONBLOCK = 0x20, 0o4000


class Openings:
    """Counts how often a file is opened, by inotify."""

    def __init__(self, path):
        library = ctypes.CDLL(None, use_errno=True)
        self.descriptor = library.inotify_init1(IN_NONBLOCK)
        if library.inotify_add_watch(self.descriptor, os.fsencode(path), IN_OPEN) < 0:
            raise OSError(ctypes.get_errno(), "inotify")

    def count(self):
        try:
            return len(os.read(self.descriptor, 1 << 16)) // 16
        except BlockingIOError:
            return 0
        finally:
            os.close(self.descriptor)


def standing(desktop, program, seconds):
    spent(program, 0)
    openings = Openings(desktop.settings_file)
    processor, woken = processor_seconds(program), wakeups(program)
    began = time.monotonic()
    _, drawings = desktop.watch(seconds)
    passed = time.monotonic() - began
    share = 100 * (processor_seconds(program) - processor) / passed
    return share, (wakeups(program) - woken) / passed, drawings, openings.count()


def measure(context):
    rows = []
    path = clip("heavy", context.clips)
    seconds = 20
    desktop = Desktop(context, 2)
    try:
        peer = desktop.start_peer(path, 0, 1920, "--pause")
        desktop.prepare(path)
        peer_share, peer_woken, _, _ = standing(desktop, peer, seconds)
        desktop.stop(peer)
        agent = desktop.start_ours(path, 2)
        for name, settings in (("paused", {"isPlaying": False}), ("closed", {"IsOpenPlayer": False})):
            desktop.write_settings(isPlaying=True)
            wait_for(desktop.moves, "a moving picture")
            desktop.write_settings(**settings)
            wait_for(lambda: not desktop.moves(), "a picture that stands")
            share, woken, drawings, openings = standing(desktop, agent, seconds)
            rows.append(Row(f"{name}: processor (% of a core)", f"{share:.2f}", f"{peer_share:.2f}", share, 0.1))
            rows.append(Row(f"{name}: wakeups a second", f"{woken:.1f}", f"{peer_woken:.1f}", woken, 5))
            rows.append(Row(f"{name}: drawings in {seconds} s", str(drawings), "0", float(drawings), 0))
            rows.append(
                Row(f"{name}: openings of the settings file in {seconds} s", str(openings), "0", float(openings), 0)
            )
        desktop.end_agent()
    finally:
        desktop.close()
    return rows

