"""The lie of the dusk land: where the ground runs, what can be stood on, where things grow.

The painter and the game share it: `lua_table` writes the part that a game needs.
"""

import numpy as np

from brush import closed

WIDTH, HEIGHT = 2560, 540

_BENDS = [
    (0, 430),
    (150, 438),
    (320, 448),
    (480, 434),
    (640, 412),
    (760, 408),
    (900, 428),
    (1040, 448),
    (1130, 456),
    (1186, 466),
    (1214, 540),
    (1280, 620),
    (1400, 620),
    (1466, 540),
    (1494, 466),
    (1560, 456),
    (1700, 438),
    (1850, 410),
    (1960, 396),
    (2080, 408),
    (2200, 434),
    (2330, 448),
    (2560, 430),
]

WATER = dict(left=1196, right=1484, level=482)
BRIDGE = dict(left=1150, right=1530, y=458, rise=20)

# (left, right, top): stone slabs that can be jumped on from below
SLABS = [
    (330, 398, 398),
    (628, 712, 356),
    (736, 806, 310),
    (832, 916, 264),
    (1672, 1748, 388),
    (1776, 1846, 340),
    (1872, 1976, 292),
    (2190, 2262, 384),
]

# (x, height, kind); the foot stands on the ground
TREES = [
    (64, 236, "oak"),
    (214, 180, "maple"),
    (498, 246, "oak"),
    (1008, 232, "maple"),
    (1100, 170, "oak"),
    (1606, 240, "oak"),
    (2068, 216, "maple"),
    (2330, 250, "oak"),
    (2470, 190, "maple"),
]
FAR_TREES = [
    (140, 120),
    (360, 110),
    (420, 132),
    (570, 120),
    (960, 118),
    (1180, 124),
    (1270, 96),
    (1420, 110),
    (1505, 130),
    (1690, 118),
    (1800, 100),
    (2130, 126),
    (2250, 112),
    (2400, 128),
    (2540, 118),
]
LANTERNS = [266, 566, 948, 1148, 1532, 2020, 2280]


def ground():
    """Ground height of every column, without the bridge."""
    xs, ys = zip(*_BENDS)
    line = np.interp(np.arange(-40, WIDTH + 40), xs, ys)
    bell = np.exp(-np.linspace(-2.0, 2.0, 61) ** 2)
    smooth = np.convolve(line, bell / bell.sum(), "same")[40:-40]
    x = np.arange(WIDTH)
    return closed(smooth + 1.6 * np.sin(x / 23.0) + 1.1 * np.sin(x / 9.7 + 1.0))


def bridge(x):
    """Deck height of the bridge at x."""
    along = (np.asarray(x, float) - BRIDGE["left"]) / (BRIDGE["right"] - BRIDGE["left"])
    return BRIDGE["y"] - BRIDGE["rise"] * np.sin(np.pi * np.clip(along, 0, 1))


def walkway():
    """Height that feet reach in every column, the bridge included."""
    x, line = np.arange(WIDTH), ground()
    on_bridge = (x >= BRIDGE["left"]) & (x <= BRIDGE["right"])
    return np.where(on_bridge, np.minimum(line, bridge(x)), line)


def lua_table(step=8):
    heights = [int(round(y)) for y in walkway()[::step]]
    rows = [", ".join(map(str, heights[i : i + 20])) for i in range(0, len(heights), 20)]
    slabs = "".join(f"    {{left = {l}, right = {r}, top = {t}}},\n" for l, r, t in SLABS)
    return (
        "-- Where feet stand in the dusk world, written by art/build.py: ground height every `step` pixels, and ledges.\n"
        f"return {{\n  width = {WIDTH}, height = {HEIGHT}, step = {step},\n  ledges = {{\n{slabs}  }},\n  ground = {{\n    "
        + ",\n    ".join(rows)
        + "\n  },\n}\n"
    )
