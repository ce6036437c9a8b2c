"""The living things: birds, an owl, a butterfly, fireflies, and plants that stand close to the viewer.

A sheet holds frames of one size side by side; `SHEETS` says how wide they are.
"""

import math

import numpy as np

import flora
import masonry
import wanderer
from brush import Canvas, generator, mix, shade

# frame width, frame height, frames
SHEETS = {"hero": wanderer.SHEET, "bird": (32, 24, 6), "butterfly": (24, 20, 4), "owl": (40, 40, 6)}

INK = (30, 22, 44)


def bird(frames=SHEETS["bird"]):
    """A swallow seen against the sky; the wings beat over six frames."""
    width, height, count = frames
    canvas = Canvas(width * count, height, 4)
    dark, middle, light = (44, 34, 74), (74, 58, 106), (248, 178, 140)
    for k in range(count):
        x, y, beat = width * k + 16, 13, math.sin(2 * math.pi * k / count)
        for side, tone in ((-1, dark), (1, middle)):
            tip = (x - 5 + side * 2.5, y - 10.5 * beat - side * 1.2)
            elbow = (x + 1 + side * 2.2, y - 5.0 * beat - 1.5)
            canvas.polygon([(x + 4.5, y - 0.5), elbow, tip, (x - 1.5, y + 1.2 - 2.0 * beat), (x - 3.5, y + 1)], tone)
            canvas.stroke([(x + 4.0, y - 1), elbow, tip], 0.9, light if side > 0 else middle)
        canvas.polygon(
            [(x - 13, y - 2), (x - 6, y - 0.6), (x - 4, y + 2.4), (x - 13.5, y + 3.2), (x - 8.5, y + 0.8)], dark
        )
        canvas.dab(x, y + 0.6, 8.6, 3.0, 0.03, dark)
        canvas.dab(x + 1.4, y + 1.6, 5.6, 1.5, 0.05, light)
        canvas.disc(x + 7.4, y - 0.6, 2.9, 2.5, dark)
        canvas.disc(x + 8.0, y + 0.7, 1.8, 1.1, (214, 84, 76))
        canvas.polygon([(x + 9.8, y - 1), (x + 13, y + 0.2), (x + 9.8, y + 0.6)], (236, 190, 130))
        canvas.disc(x + 8.4, y - 1.2, 0.5, 0.5, (255, 240, 220))
    return canvas.pixels()


def owl(frames=SHEETS["owl"]):
    """An owl on slow wings, seen from the front, six frames."""
    width, height, count = frames
    canvas = Canvas(width * count, height, 4)
    down, mid, pale = (70, 48, 74), (122, 84, 90), (238, 200, 160)
    for k in range(count):
        x, y, beat = width * k + 20, 21, math.sin(2 * math.pi * k / count)
        y -= beat * 1.5
        for side in (-1, 1):
            for feather in range(5):
                reach = 18.5 - feather * 2.6
                lift = -9.5 * beat * (1 - feather * 0.1) + feather * 2.4 - 3
                canvas.dab(
                    x + side * reach * 0.55,
                    y + lift * 0.5,
                    reach * 0.5,
                    3.4,
                    math.atan2(lift, side * reach),
                    shade([down, mid, pale], 0.1 + feather * 0.13),
                )
            canvas.stroke(
                [(x + side * 3, y - 4), (x + side * 11, y - 4 - 6 * beat), (x + side * 18, y - 3 - 9.5 * beat)],
                1.2,
                pale,
            )
        canvas.disc(x, y + 2, 7.2, 9.6, down)
        canvas.disc(x, y + 4, 5.4, 7.0, pale)
        for row in range(4):
            for side in range(-2, 3):
                canvas.dab(x + side * 2.1 + (row % 2), y + 1 + row * 2.4, 1.0, 0.6, 1.57, mid)
        canvas.disc(x, y - 6, 7.6, 6.4, mid)
        for side in (-1, 1):
            canvas.polygon([(x + side * 2.6, y - 10.5), (x + side * 7.0, y - 14), (x + side * 7.2, y - 8)], down)
            canvas.disc(x + side * 3.3, y - 5.8, 3.6, 3.7, pale)
            canvas.disc(x + side * 3.1, y - 5.8, 2.3, 2.4, (255, 204, 92))
            canvas.disc(x + side * 3.0, y - 5.8, 1.25, 1.4, INK)
            canvas.disc(x + side * 3.0 + 0.5, y - 6.4, 0.45, 0.45, (255, 255, 255))
        canvas.polygon([(x - 1.2, y - 4.4), (x + 1.2, y - 4.4), (x, y - 1.6)], (240, 160, 84))
    return canvas.pixels()


def butterfly(frames=SHEETS["butterfly"]):
    """A pale butterfly seen from above, its wings folding; four frames."""
    width, height, count = frames
    canvas = Canvas(width * count, height, 4)
    edge, cream, blush = (96, 46, 84), [(232, 150, 140), (255, 206, 164), (255, 242, 210)], (236, 120, 120)
    for k in range(count):
        x, y, spread = width * k + width / 2, height / 2, (1.0, 0.72, 0.34, 0.72)[k]
        for side in (-1, 1):
            wing = lambda points: [(x + side * px * spread, y + py) for px, py in points]
            upper = [(0.6, -1), (3, -6.6), (7.6, -8.4), (10, -6.6), (8.6, -2), (4.6, 0.4)]
            lower = [(0.6, 0), (4.6, 0.2), (7.6, 2), (7.2, 5.6), (5.4, 8.4), (3.6, 6.2), (1.2, 2.4)]
            for shape, tone in ((lower, 0), (upper, 1)):
                canvas.polygon(wing(shape), edge)
                middle = (sum(p[0] for p in shape) / len(shape), sum(p[1] for p in shape) / len(shape))
                inner = [(px * 0.76 + middle[0] * 0.24, py * 0.76 + middle[1] * 0.24) for px, py in shape]
                canvas.polygon(wing(inner), cream[tone])
                glint = [(px * 0.42 + middle[0] * 0.58, py * 0.42 + middle[1] * 0.58 - 0.6) for px, py in shape]
                canvas.polygon(wing(glint), cream[tone + 1])
            canvas.disc(x + side * 7.6 * spread, y - 5.4, 1.1 * spread, 1.1, blush)
            canvas.disc(x + side * 5.2 * spread, y + 4.4, 1.0 * spread, 1.0, blush)
            canvas.stroke([(x, y - 4), (x + side * 1.6, y - 7), (x + side * 3.2, y - 8.6)], 0.6, edge)
        canvas.dab(x, y - 0.4, 5.4, 1.2, 1.57, (58, 30, 62))
    return canvas.pixels()


def glow(size, core, halo):
    """A point of light with a soft halo: the core is opaque, so that it also shows where alpha is cut off."""
    y, x = np.mgrid[0:size, 0:size] - (size - 1) / 2.0
    far = np.hypot(x, y) / (size / 2.0)
    alpha = np.clip(np.exp(-((far / 0.42) ** 2)) * 0.75 * np.clip((1.0 - far) * 3, 0, 1) + (far < 0.17), 0, 1)
    return mix(np.broadcast_to(np.array(halo, float), (size, size, 3)), core, np.exp(-((far / 0.16) ** 2))), alpha


def hanging_lantern():
    canvas = Canvas(24, 40, 4)
    canvas.stroke([(12, 0), (12, 12)], 0.9, masonry.WOOD[4])
    masonry.lantern(canvas, 12, 11, 1.3, (206, 140, 84))
    return canvas.pixels()


def near_fern():
    """A dark fern close to the viewer, to stand before the hero."""
    canvas = Canvas(96, 64)
    rng = generator("near fern")
    dusk = [(22, 22, 50), (28, 36, 66), (36, 58, 76), (60, 88, 82), (116, 128, 84)]
    for x, size in ((30, 40), (64, 46), (48, 54)):
        flora.fern(canvas, x, 64, size, rng, dusk)
    return canvas.pixels()


def near_reeds():
    canvas = Canvas(80, 72)
    rng = generator("near reeds")
    dusk = [(20, 24, 52), (30, 44, 70), (44, 70, 78), (86, 108, 84), (170, 156, 94)]
    for _ in range(46):
        x, tall, bend = rng.normal(40, 15), rng.uniform(26, 62), rng.normal(4, 8)
        canvas.polygon(
            [(x - 1.4, 72), (x + 1.4, 72), (x + bend * 0.3, 72 - tall * 0.6), (x + bend, 72 - tall)],
            shade(dusk, rng.uniform(0, 0.8)),
        )
    for _ in range(5):
        x, tall, bend = rng.normal(40, 12), rng.uniform(48, 62), rng.normal(2, 4)
        canvas.stroke([(x, 72), (x + bend, 72 - tall)], 1.1, dusk[2])
        canvas.limb(
            [(x + bend * 0.86, 72 - tall * 0.86), (x + bend * 1.06, 72 - tall * 1.08)], [4.4, 4.0], (74, 40, 50)
        )
        canvas.stroke(
            [(x + bend * 0.88 + 1, 72 - tall * 0.88), (x + bend * 1.04 + 1, 72 - tall * 1.05)], 1.0, (166, 100, 76)
        )
    return canvas.pixels()


def paint_all():
    """Name to (colour, alpha)."""
    return {
        "hero": wanderer.hero(),
        "bird": bird(),
        "owl": owl(),
        "butterfly": butterfly(),
        "lantern": hanging_lantern(),
        "fern": near_fern(),
        "reeds": near_reeds(),
        "firefly": glow(15, (255, 255, 214), (196, 255, 120)),
        "spark": glow(23, (255, 252, 226), (255, 190, 100)),
    }
