"""Memory while playing, as proportional set size."""

import time

from measure import WARM_UP, Desktop, clip, compared, memory


def measure(context):
    path = clip("heavy", context.clips)
    results = {"peer": [], 1: [], 2: [], 4: []}
    desktop = Desktop(context, 4)
    try:
        for _ in range(context.rounds):
            for each, values in results.items():
                desktop.set_monitor_count(4)
                program = desktop.start_peer(path) if each == "peer" else desktop.start_ours(path, each)
                time.sleep(2 * WARM_UP)
                values.append(memory(program))
                desktop.stop(program)
    finally:
        desktop.close()
    return [
        compared("memory: one monitor / peer", results[1], results["peer"], 1.35, "MiB"),
        compared("memory: two mirrored / one", results[2], results[1], 1.1, "MiB"),
        compared("memory: four mirrored / one", results[4], results[1], 1.3, "MiB"),
    ]
