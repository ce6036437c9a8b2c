"""Trees, grass and flowers, touch by touch. The low sun stands on the right: edges that face it glow."""

import math

import numpy as np

from brush import shade

LEAVES = {
    "oak": [(26, 26, 60), (34, 46, 80), (42, 70, 86), (66, 98, 84), (120, 134, 82), (204, 170, 96), (255, 218, 150)],
    "maple": [
        (46, 26, 64),
        (84, 36, 80),
        (140, 54, 86),
        (200, 86, 90),
        (242, 140, 98),
        (255, 190, 124),
        (255, 228, 176),
    ],
    "far": [
        (60, 54, 104),
        (72, 66, 116),
        (86, 76, 124),
        (108, 86, 130),
        (140, 100, 134),
        (184, 126, 138),
        (222, 160, 146),
    ],
}
BARK = [(36, 26, 52), (56, 38, 62), (84, 54, 70), (132, 82, 82), (206, 140, 108)]
GRASS = [(24, 36, 60), (30, 56, 70), (44, 82, 76), (84, 116, 78), (156, 158, 84), (236, 204, 112)]


def clump(canvas, x, y, radius, leaves, light, rng, leaf=4.2):
    """A rounded mass of leaves; light shifts the whole mass along its ramp."""
    for layer in range(3):
        for _ in range(int(radius * 2.6)):
            angle, far = rng.random() * 2 * math.pi, math.sqrt(rng.random())
            dx, dy = far * math.cos(angle), far * math.sin(angle)
            facing = 0.62 * dx - 0.78 * dy
            if layer == 1 and facing < -0.25 or layer == 2 and facing < 0.35:
                continue
            tone = 0.20 + 0.13 * layer + 0.26 * facing + light + rng.normal(0, 0.055)
            size = leaf * rng.uniform(0.7, 1.25)
            canvas.dab(
                x + dx * radius * 1.12,
                y + dy * radius * 0.9,
                size,
                size * 0.5,
                rng.normal(0.5, 0.7),
                shade(leaves, tone),
            )


def trunk(canvas, points, widths, rng, bark=BARK):
    """A trunk: dark body, a lit right edge, and strokes of bark along it."""
    canvas.limb(points, widths, bark[0])
    canvas.limb([(x + w * 0.10, y) for (x, y), w in zip(points, widths)], [w * 0.76 for w in widths], bark[1])
    for (x1, y1), (x2, y2), w1, w2 in zip(points, points[1:], widths, widths[1:]):
        for _ in range(int(w1 * 1.8)):
            side, low = rng.uniform(-0.42, 0.46), rng.uniform(0.0, 0.8)
            high = low + rng.uniform(0.1, 0.3)
            tone = 0.22 + 0.75 * max(0.0, side) + rng.normal(0, 0.06)
            canvas.stroke(
                [(x1 + (x2 - x1) * t + side * (w1 + (w2 - w1) * t), y1 + (y2 - y1) * t) for t in (low, high)],
                0.9,
                shade(bark, tone),
            )
    canvas.stroke([(x + w * 0.44, y) for (x, y), w in zip(points, widths)], 1.2, bark[4])


def tree(canvas, x, foot, height, kind, rng):
    """A broad tree: flaring trunk, a handful of boughs, and clumps of leaves from the back to the front."""
    lean = rng.uniform(-0.08, 0.08) * height
    girth = height * 0.085
    fork = foot - height * 0.46
    spine = [
        (x, foot + 6),
        (x + lean * 0.15, foot - height * 0.10),
        (x + lean * 0.4, foot - height * 0.28),
        (x + lean * 0.7, fork),
    ]
    crowns = []
    for turn in np.linspace(-1.0, 1.0, 6) + rng.normal(0, 0.07, 6):
        reach = height * rng.uniform(0.26, 0.34)
        crowns.append(
            (x + lean + turn * reach * 1.25, fork - height * (0.07 + 0.24 * (1 - turn * turn)) + rng.normal(0, 5))
        )
    for cx, cy in crowns:
        clump(canvas, cx, cy + height * 0.03, height * 0.125, LEAVES[kind], -0.20, rng)
    for cx, cy in crowns:
        middle = ((spine[-1][0] * 0.45 + cx * 0.55), (fork * 0.6 + cy * 0.4) - 3)
        trunk(canvas, [(spine[-1][0], fork + 6), middle, (cx, cy)], [girth * 0.46, girth * 0.3, girth * 0.12], rng)
    for side in (-1, 1):
        trunk(
            canvas,
            [(x + side * girth * 1.25, foot + 9), (x + side * girth * 0.45, foot - 5), (x, foot - 22)],
            [girth * 0.25, girth * 0.5, girth * 0.5],
            rng,
        )
    trunk(canvas, spine, [girth * 1.3, girth, girth * 0.84, girth * 0.66], rng)
    masses = [
        (cx + rng.normal(0, height * 0.05), cy + rng.uniform(-0.10, 0.05) * height, height * rng.uniform(0.085, 0.14))
        for cx, cy in crowns
        for _ in range(4)
    ]
    for cx, cy, radius in sorted(masses, key=lambda m: -m[1]):
        light = 0.15 * (cx - x) / (height * 0.4) + 0.24 * ((fork - cy) / (height * 0.4) - 0.3)
        clump(canvas, cx, cy, radius, LEAVES[kind], light, rng)


def far_tree(canvas, x, foot, height, rng):
    """A tree in the haze: a slim trunk and few, soft masses."""
    canvas.limb([(x, foot + 20), (x, foot - height * 0.5)], [height * 0.06, height * 0.03], LEAVES["far"][0])
    for _ in range(9):
        dx, up = rng.normal(0, 0.17), rng.uniform(0.42, 0.95)
        radius = height * (0.20 - 0.12 * abs(up - 0.62))
        clump(
            canvas, x + dx * height, foot - up * height, radius, LEAVES["far"], 0.25 * (up - 0.6) + 0.2 * dx, rng, 3.4
        )


def grass(canvas, line, left, right, rng, tall=11.0, rows=3, warm=0.0):
    """Blades along a line (a function of x), from a dark back row to a bright front row."""
    for row in range(rows):
        for x in np.arange(left, right, 1.15):
            x += rng.uniform(-1, 1)
            foot = line(x) + 1.5 + row * 1.6
            height = (
                tall
                * (1.0 - 0.22 * row)
                * rng.uniform(0.35, 1.0)
                * (0.7 + 0.3 * math.sin(x * 0.13) * math.sin(x * 0.041 + 2))
            )
            bend = rng.normal(0.8, 2.4)
            tone = 0.14 + 0.20 * row + rng.normal(0, 0.10) + warm
            canvas.polygon([(x - 0.8, foot), (x + 0.8, foot), (x + bend, foot - height)], shade(GRASS, tone))


def fringe(canvas, line, left, right, rng):
    """Turf that hangs over the edge of the earth."""
    for row in range(3):
        for x in np.arange(left, right, 1.5):
            top = line(x)
            drop = (13 - 3.6 * row) * rng.uniform(0.45, 1.0) * (0.75 + 0.35 * math.sin(x * 0.19))
            canvas.polygon(
                [(x - 1.7, top), (x + 1.7, top), (x + rng.normal(0, 1.2), top + drop)],
                shade(GRASS, 0.12 + 0.2 * row + rng.normal(0, 0.06)),
            )


def flower(canvas, x, foot, rng, colours):
    tall = rng.uniform(8, 17)
    tip = x + rng.normal(0.5, 1.6)
    canvas.stroke([(x, foot), ((x + tip) / 2 + 0.6, foot - tall * 0.55), (tip, foot - tall)], 0.9, GRASS[2])
    canvas.dab(x + 1.5, foot - tall * 0.4, 2.6, 1.0, -0.7, GRASS[3])
    petals = colours[int(rng.integers(len(colours)))]
    radius = rng.uniform(1.5, 2.3)
    for k in range(5):
        a = k * 2 * math.pi / 5 + rng.uniform(0, 1)
        canvas.disc(
            tip + radius * math.cos(a),
            foot - tall + radius * math.sin(a) * 0.8,
            radius * 0.72,
            radius * 0.66,
            shade(petals, 0.5 - 0.4 * math.sin(a) + 0.2 * math.cos(a)),
        )
    canvas.disc(tip, foot - tall, radius * 0.5, radius * 0.5, (255, 226, 140))


def mushroom(canvas, x, foot, size, rng):
    canvas.limb([(x, foot + 2), (x + 0.6, foot - size)], [size * 0.42, size * 0.3], (196, 168, 168))
    canvas.limb([(x - size * 0.06, foot + 2), (x + 0.4, foot - size)], [size * 0.2, size * 0.14], (132, 104, 130))
    cap = [
        (x - size * 0.8, foot - size * 0.85),
        (x - size * 0.55, foot - size * 1.35),
        (x, foot - size * 1.62),
        (x + size * 0.6, foot - size * 1.32),
        (x + size * 0.85, foot - size * 0.85),
    ]
    canvas.polygon(cap, (156, 52, 76))
    canvas.polygon(
        [(px * 0.7 + (x + size * 0.12) * 0.3, py * 0.8 + (foot - size * 1.5) * 0.2) for px, py in cap], (212, 88, 86)
    )
    for _ in range(4):
        canvas.disc(
            x + rng.uniform(-0.45, 0.5) * size,
            foot - size * rng.uniform(0.98, 1.4),
            size * 0.10,
            size * 0.08,
            (255, 226, 196),
        )


def fern(canvas, x, foot, size, rng, tones=GRASS):
    """A fan of arched fronds with leaflets on both sides."""
    for turn in np.linspace(-1.15, 1.15, 7) + rng.normal(0, 0.06, 7):
        for step in np.linspace(0.05, 1.0, 13):
            px = x + math.sin(turn) * size * step * 1.05
            py = foot - math.cos(turn) * size * step + 0.42 * size * abs(math.sin(turn)) * step * step
            leaf = size * 0.17 * (1.05 - step)
            for side in (-1, 1):
                canvas.dab(
                    px + side * leaf * 0.6,
                    py,
                    leaf + 0.8,
                    leaf * 0.32 + 0.4,
                    turn - math.pi / 2 + side * 0.9,
                    shade(tones, 0.12 + 0.5 * step * (0.6 + 0.4 * turn) + 0.06 * side),
                )
