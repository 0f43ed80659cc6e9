"""From start to the first frame on the screen."""

import subprocess
import time

from measure import Desktop, clip, compared


def first_frame(desktop, start):
    """Seconds from the call until the screen shows a frame with a counter."""
    program = desktop.context.build / "bin" / "screen_watch"
    watch = subprocess.Popen([program, "5"], env=desktop.environment, stdout=subprocess.PIPE, text=True)
    try:
        time.sleep(0.3)  # for the watch to connect; what is on the screen then is not told
        begun = time.clock_gettime(time.CLOCK_MONOTONIC)
        player = start()
        # Frame 0 has no bit set, like a black screen, so frame 1 is the first to be recognised.
        for line in watch.stdout:
            when, number = line.split()
            if when != "drawings" and int(number) == 1:
                break
        desktop.stop(player)
        return int(when) / 1e6 - begun - 1 / 30
    finally:
        watch.kill()
        watch.wait()
        watch.stdout.close()


def measure(context):
    path = clip("light", context.clips)
    ours, peer = [], []
    desktop = Desktop(context, 1)
    try:
        desktop.prepare(path)
        for _ in range(max(5, context.rounds)):
            ours.append(first_frame(desktop, desktop.start_agent))
            peer.append(first_frame(desktop, lambda: desktop.start_peer(path)))
    finally:
        desktop.close()
    return [compared("start to first frame / peer", ours, peer, 1.5, "s")]
