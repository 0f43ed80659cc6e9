"""Processor time of playing: against decoding alone, over several monitors, and across them."""

from measure import SECONDS, SIZE, Desktop, clip, compared, spent


def measured(desktop, program):
    seconds = spent(program)
    desktop.stop(program)
    return seconds


def measure(context):
    rows = []
    unit = f"s in {SECONDS} s"
    results = {}
    desktop = Desktop(context, 4)
    try:
        for name in ("heavy", "light"):
            path = clip(name, context.clips)
            starts = {
                "floor": lambda: desktop.start_floor(path),
                "one": lambda: desktop.start_ours(path, 1),
                "peer": lambda: desktop.start_peer(path),
                "two": lambda: desktop.start_ours(path, 2),
                "four": lambda: desktop.start_ours(path, 4),
                "combo": lambda: desktop.start_ours(path, 2, arrangement=0),
                "peer across": lambda: desktop.start_peer(path, 0, 2 * SIZE[0], "--panscan=1"),
            }
            results = {each: [] for each in starts}
            for _ in range(context.rounds):
                for each, start in starts.items():
                    desktop.set_monitor_count(2)
                    results[each].append(measured(desktop, start()))
            add = lambda figure, ours, reference, target: rows.append(
                compared(f"{figure}, {name} clip", results[ours], results[reference], target, unit)
            )
            add("one monitor / decoding alone", "one", "floor", 1.15)
            add("one monitor / peer on one", "one", "peer", 1.0)
            add("two mirrored / one", "two", "one", 1.06)
            add("four mirrored / one", "four", "one", 1.15)
            add("one picture across two / peer across two", "combo", "peer across", 1.0)
    finally:
        desktop.close()
    return rows
