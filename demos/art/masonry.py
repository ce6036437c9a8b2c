"""Old stone and wood: slabs to stand on, a ruined arcade, the bridge, lantern posts."""

import math

import numpy as np

from brush import shade
from flora import GRASS, LEAVES, clump

STONE = [(44, 38, 72), (66, 58, 94), (92, 80, 114), (126, 106, 128), (176, 142, 140), (236, 192, 158)]
WOOD = [(40, 26, 46), (66, 42, 56), (98, 62, 66), (142, 92, 78), (206, 146, 104)]


def block(canvas, x, y, w, h, tone, rng):
    """One hewn stone: worn corners, a lit top and right edge."""
    j = lambda: rng.uniform(-0.7, 0.7)
    corners = [
        (x + 0.6 + j(), y + 0.6 + j()),
        (x + w - 0.6 + j(), y + 0.6 + j()),
        (x + w - 0.6 + j(), y + h - 0.5 + j()),
        (x + 0.6 + j(), y + h - 0.5 + j()),
    ]
    canvas.polygon(corners, shade(STONE, tone))
    canvas.stroke([corners[0], corners[1], corners[2]], 0.9, shade(STONE, tone + 0.20))
    canvas.stroke([corners[2], corners[3], corners[0]], 0.8, shade(STONE, tone - 0.16))
    for _ in range(int(w * h / 40)):
        canvas.dab(
            x + rng.uniform(2, max(2.1, w - 2)),
            y + rng.uniform(2, max(2.1, h - 2)),
            rng.uniform(1, 2.6),
            0.6,
            rng.normal(0, 0.3),
            shade(STONE, tone + rng.normal(0, 0.07)),
        )


def wall(canvas, left, right, top, bottom, rng, tone=0.3, course=11.0):
    """Courses of stones between two edges (functions of y), mortar dark between them."""
    y = top
    while y < bottom:
        l, r = left(y), right(y)
        canvas.polygon([(l, y), (r, y), (r, y + course), (l, y + course)], STONE[0])
        x = l - rng.uniform(0, 9)
        while x < r:
            w = rng.uniform(13, 24)
            a, b = max(x, l), min(x + w, r)
            if b - a > 3:
                sun = 0.16 * (a + b - l - r) / max(r - l, 1.0)
                block(
                    canvas,
                    a,
                    y,
                    b - a,
                    course,
                    tone + sun + rng.normal(0, 0.05) - 0.12 * smooth_down(y, top, bottom),
                    rng,
                )
            x += w
        y += course


def smooth_down(y, top, bottom):
    return min(max((y - top) / max(bottom - top, 1.0), 0.0), 1.0)


def ivy(canvas, x, y, length, rng):
    px = x
    for step in range(int(length / 2.2)):
        px += rng.normal(0, 1.1)
        for _ in range(2):
            canvas.dab(
                px + rng.normal(0, 2.2),
                y + step * 2.2,
                2.4,
                1.5,
                rng.random() * 3,
                shade(LEAVES["oak"], rng.uniform(0.14, 0.62)),
            )


def slab(canvas, left, right, top, foot, rng):
    """A ledge: a thick slab on a broken pillar that goes down to the ground, moss and turf on its top."""
    middle, half = (left + right) / 2 + rng.uniform(-6, 6), (right - left) * 0.23
    bulge = lambda y: half * (1.0 + 0.28 * max(0.0, 1.0 - (y - top - 12) / 16.0)) + 1.2 * math.sin(y * 0.31)
    wall(canvas, lambda y: middle - bulge(y), lambda y: middle + bulge(y), top + 12, foot + 14, rng, 0.27)
    wall(
        canvas,
        lambda y: left + 2 + 0.5 * (y - top),
        lambda y: right - 2 - 0.5 * (y - top),
        top + 1,
        top + 13,
        rng,
        0.46,
        6.5,
    )
    for _ in range(6):
        ivy(canvas, rng.uniform(left + 4, right - 4), top + 4, rng.uniform(8, 36), rng)
    for x in np.arange(left - 1, right + 2, 1.2):
        drop = 5.0 * rng.uniform(0.3, 1.0) * (0.8 + 0.5 * math.sin(x * 0.33))
        canvas.polygon(
            [(x - 1.6, top - 1), (x + 1.6, top - 1), (x + rng.normal(0, 0.8), top + drop)],
            shade(GRASS, rng.uniform(0.12, 0.5)),
        )
    for x in np.arange(left, right, 1.3):
        tall = rng.uniform(1.5, 5.5)
        canvas.polygon(
            [(x - 0.8, top + 1), (x + 0.8, top + 1), (x + rng.normal(0.6, 1.3), top - tall)],
            shade(GRASS, rng.uniform(0.3, 0.95)),
        )


def arch(canvas, left, right, top, foot, rng):
    """A round arch of a lost hall, seen against the sky."""
    middle, radius = (left + right) / 2, (right - left) / 2
    spring, pier = top + radius, radius * 0.30
    for side in (-1, 1):
        a, b = sorted((middle + side * radius, middle + side * (radius - pier)))
        wall(canvas, lambda y: a, lambda y: b, spring, foot + 14, rng, 0.24)
        block(canvas, a - 3, spring - 4, b - a + 6, 7, 0.46, rng)
    steps = 15
    for k in range(steps):
        a1, a2 = math.pi * k / steps, math.pi * (k + 1) / steps - 0.02
        ring = [
            (middle + radius * math.cos(a1), spring - 4 - radius * math.sin(a1)),
            (middle + radius * math.cos(a2), spring - 4 - radius * math.sin(a2)),
            (middle + (radius - pier) * math.cos(a2), spring - 4 - (radius - pier) * math.sin(a2)),
            (middle + (radius - pier) * math.cos(a1), spring - 4 - (radius - pier) * math.sin(a1)),
        ]
        tone = 0.30 + 0.14 * math.cos(a1) + 0.10 * math.sin(a1) + rng.normal(0, 0.05)
        canvas.polygon(ring, shade(STONE, tone))
        canvas.stroke([ring[0], ring[1]], 1.1, shade(STONE, tone + 0.32 * max(0.0, math.cos(a1 - 0.8))))
        canvas.stroke([ring[1], ring[2], ring[3]], 0.8, shade(STONE, tone - 0.14))
    for _ in range(9):
        a = rng.uniform(0.5, 2.7)
        ivy(canvas, middle + radius * math.cos(a), spring - 4 - radius * math.sin(a), rng.uniform(10, 44), rng)
    clump(canvas, middle - radius * 0.5, spring - radius * 0.92, 9, LEAVES["oak"], 0.12, rng, 3.0)


def bridge(canvas, deck, left, right, water, rng):
    """A wooden bridge: posts in the water, a deck of planks, a rope rail."""
    for x in np.linspace(left + 46, right - 46, 5):
        canvas.limb([(x, deck(x)), (x - 2, water + 40)], [7, 8], WOOD[0])
        canvas.stroke([(x + 2, deck(x)), (x, water + 36)], 1.6, WOOD[3])
    beam = np.arange(left, right + 1, 6.0)
    canvas.stroke([(x, deck(x) + 9) for x in beam], 5, WOOD[0])
    canvas.stroke([(x, deck(x) + 7.5) for x in beam], 1.4, WOOD[2])
    for x in np.arange(left - 3, right, 6.4):
        tone = rng.uniform(0.35, 0.7)
        canvas.polygon(
            [(x, deck(x)), (x + 5.6, deck(x + 5.6)), (x + 5.3, deck(x) + 6), (x + 0.3, deck(x) + 6)],
            shade(WOOD, tone - 0.2),
        )
        canvas.polygon(
            [(x, deck(x)), (x + 5.6, deck(x + 5.6)), (x + 5.6, deck(x) + 2.0), (x, deck(x) + 2.0)],
            shade(WOOD, tone + 0.3),
        )
    posts = np.linspace(left + 8, right - 8, 8)
    for x in posts:
        canvas.limb([(x, deck(x) + 4), (x, deck(x) - 25)], [4.6, 4.0], WOOD[1])
        canvas.stroke([(x + 1.4, deck(x) + 2), (x + 1.4, deck(x) - 25)], 1.1, WOOD[4])
        canvas.disc(x, deck(x) - 25.5, 2.8, 1.6, WOOD[4])
    for a, b in zip(posts, posts[1:]):
        for height, sag in ((22, 8), (12, 6)):
            canvas.stroke(
                [
                    (a + (b - a) * t, deck(a) * (1 - t) + deck(b) * t - height + sag * math.sin(math.pi * t))
                    for t in np.linspace(0, 1, 12)
                ],
                1.1,
                WOOD[3],
            )


def lantern(canvas, x, y, size=1.0, metal=(52, 36, 56)):
    """A small glass lantern hung at its ring (x, y); returns where its flame is."""
    s = size
    canvas.stroke([(x, y), (x, y + 3 * s)], 1.0 * s, WOOD[0])
    canvas.polygon([(x - 5 * s, y + 6 * s), (x, y + 2 * s), (x + 5 * s, y + 6 * s)], metal)
    canvas.polygon(
        [(x - 4 * s, y + 6 * s), (x + 4 * s, y + 6 * s), (x + 3.4 * s, y + 15 * s), (x - 3.4 * s, y + 15 * s)],
        (255, 190, 92),
    )
    canvas.polygon(
        [(x - 2 * s, y + 7 * s), (x + 2.4 * s, y + 7 * s), (x + 2 * s, y + 14 * s), (x - 1.6 * s, y + 14 * s)],
        (255, 236, 168),
    )
    canvas.disc(x + 0.2 * s, y + 11 * s, 1.3 * s, 2.4 * s, (255, 255, 236))
    for side in (-3.8, 0, 3.8):
        canvas.stroke([(x + side * s, y + 6 * s), (x + side * 0.9 * s, y + 15 * s)], 0.8 * s, (86, 54, 58))
    canvas.polygon(
        [(x - 4.4 * s, y + 15 * s), (x + 4.4 * s, y + 15 * s), (x + 3.4 * s, y + 17 * s), (x - 3.4 * s, y + 17 * s)],
        metal,
    )
    return x, y + 11 * s


def lantern_post(canvas, x, foot):
    top = foot - 62
    canvas.limb([(x, foot + 6), (x + 1, top)], [5.4, 3.6], WOOD[0])
    canvas.stroke([(x + 1.6, foot + 2), (x + 2, top)], 1.2, WOOD[3])
    canvas.stroke([(x, top + 13), (x + 8, top + 3)], 1.8, WOOD[1])
    canvas.stroke([(x - 2, top), (x + 8, top - 1), (x + 15, top + 2)], 2.4, WOOD[1])
    canvas.stroke([(x - 2, top - 1), (x + 8, top - 2), (x + 15, top + 1)], 0.9, WOOD[4])
    return lantern(canvas, x + 14, top + 2)
