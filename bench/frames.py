"""A looping clip on the screen: the frames that are missing, and the time from its last frame to its first."""

import statistics

from measure import CLIP_FRAMES, Desktop, Row, clip, compared, spent

LOOPS = 5


def left_out(frames):
    """The number of frames missing between the first and the last that appeared."""
    missing = 0
    for (_, before), (_, after) in zip(frames, frames[1:]):
        missing += max(0, (after - before) % CLIP_FRAMES - 1)
    return missing


def loop_gaps(frames):
    """Milliseconds from the last frame of a pass to the first of the next."""
    return [
        1000 * (later - earlier) for (earlier, before), (later, after) in zip(frames, frames[1:]) if after < before
    ]


def measure(context):
    rows = []
    for name in ("heavy", "light"):
        path = clip(name, context.clips)
        seen = {}
        desktop = Desktop(context, 1)
        try:
            for each, start in (("peer", desktop.start_peer), ("ours", lambda clip_path: desktop.start_ours(clip_path, 1))):
                program = start(path)
                spent(program, 0)
                seen[each], _ = desktop.watch(LOOPS * CLIP_FRAMES // 30)
                desktop.stop(program)
        finally:
            desktop.close()
        missing = {each: left_out(frames) for each, frames in seen.items()}
        total = len(seen["ours"])
        rows.append(
            Row(f"frames left out, {name} clip", f"{missing['ours']} of {total}", f"{missing['peer']} of {total}",
                float(missing["ours"] - missing["peer"]), 0.0)
        )
        gaps = {each: loop_gaps(frames) for each, frames in seen.items()}
        rows.append(
            Row(f"last frame to first, {name} clip (ms)", spread(gaps["ours"]), spread(gaps["peer"]),
                statistics.median(gaps["ours"]), 50.0)
        )
    return rows


def spread(gaps):
    return f"{statistics.median(gaps):.0f} ({min(gaps):.0f} to {max(gaps):.0f})"
