"""Frames to look through: an overgrown window for the whole screen, and a gilded picture frame."""

import math

import numpy as np

import flora
import masonry
from brush import Canvas, generator, shade


def _planks(canvas, x, y, w, h, rng):
    canvas.polygon([(x, y), (x + w, y), (x + w, y + h), (x, y + h)], (46, 30, 48))
    along = w >= h
    for _ in range(int(w * h / 26)):
        px, py, run = rng.uniform(x, x + w), rng.uniform(y, y + h), rng.uniform(8, 46)
        end = (
            (min(px + run, x + w), py + rng.normal(0, 0.4))
            if along
            else (px + rng.normal(0, 0.4), min(py + run, y + h))
        )
        canvas.stroke([(px, py), end], 0.9, shade(masonry.WOOD, rng.uniform(0.12, 0.5)))


def window(width=640, height=360, hole=(20, 18, 600, 296)):
    """A wooden window frame, overgrown, around a hole for the view; a plain board below for words."""
    rng = generator("window")
    canvas = Canvas(width, height)
    x, y, w, h = hole
    for part in ((0, 0, width, y), (0, y + h, width, height - y - h), (0, y, x, h), (x + w, y, width - x - w, h)):
        _planks(canvas, *part, rng)
    for inset, tone in ((0, 0.95), (1.4, 0.25), (4, 0.72)):
        box = [
            (x - inset, y - inset),
            (x + w + inset, y - inset),
            (x + w + inset, y + h + inset),
            (x - inset, y + h + inset),
            (x - inset, y - inset),
        ]
        canvas.stroke(box, 1.2, shade(masonry.WOOD, tone))
    canvas.stroke([(3, 3), (width - 3, 3), (width - 3, height - 3), (3, height - 3), (3, 3)], 1.4, masonry.WOOD[3])
    for cx in (x - 8, x + w + 8):
        for cy in (y - 7, y + h + 8):
            canvas.disc(cx, cy, 6.4, 6.4, (70, 44, 52))
            canvas.disc(cx, cy, 5.2, 5.2, (196, 142, 78))
            canvas.disc(cx - 0.8, cy - 1.0, 3.4, 3.2, (240, 202, 124))
            canvas.disc(cx, cy, 1.6, 1.6, (124, 78, 60))
    for start, side, reach in ((x, 1, 190), (x + w, -1, 130)):
        for along in np.arange(-16, reach, 5.0):
            thick = 1.0 - max(0.0, along) / reach
            flora.clump(
                canvas,
                start + side * along,
                y - 5 + rng.normal(0, 3),
                4 + 7 * thick,
                flora.LEAVES["oak"],
                rng.uniform(-0.1, 0.12),
                rng,
                3.2,
            )
            if rng.random() < 0.55:
                masonry.ivy(canvas, start + side * along, y, rng.uniform(6, 14 + 46 * thick), rng)
        for down in np.arange(0, 90, 6.0):
            flora.clump(
                canvas,
                start - side * 8 + rng.normal(0, 3),
                y + down,
                7 - down * 0.05,
                flora.LEAVES["oak"],
                rng.uniform(-0.12, 0.1),
                rng,
                3.0,
            )
    for cx in (x + 30, x + 96, x + w - 40):
        flora.flower(canvas, cx, y + 6, rng, [[(222, 96, 128), (255, 190, 190)]])
    colour, alpha = canvas.pixels()
    return colour, alpha


def gilded_frame(width=196, height=144, rim=18):
    """A gilded picture frame with an empty middle, for a picture that moves."""
    rng = generator("gilded")
    canvas = Canvas(width, height)
    gold = [(66, 38, 50), (128, 78, 58), (198, 140, 74), (244, 204, 120), (255, 244, 200)]
    for step in range(rim):
        t = step / (rim - 1)
        profile = 0.28 + 0.42 * math.sin(t * math.pi * 2.5) ** 2
        a, b, c, d = step, step, width - step, height - step
        for line, facing in (
            (((a, b), (c, b)), 0.14),
            (((c, b), (c, d)), 0.06),
            (((c, d), (a, d)), -0.16),
            (((a, d), (a, b)), -0.08),
        ):
            canvas.stroke(line, 1.6, shade(gold, profile + facing))
    for cx, cy in (
        (9, 9),
        (width - 9, 9),
        (9, height - 9),
        (width - 9, height - 9),
        (width / 2, 7),
        (width / 2, height - 7),
    ):
        for k in range(8):
            angle = k * math.pi / 4 + 0.2
            canvas.dab(
                cx + 5.5 * math.cos(angle),
                cy + 5.5 * math.sin(angle),
                5,
                2.4,
                angle,
                shade(gold, 0.5 - 0.3 * math.sin(angle) + rng.normal(0, 0.05)),
            )
        canvas.disc(cx, cy, 3, 3, gold[3])
        canvas.disc(cx - 0.6, cy - 0.8, 1.3, 1.2, gold[4])
    colour, alpha = canvas.pixels()
    alpha[rim : height - rim, rim : width - rim] = 0
    return colour, alpha
