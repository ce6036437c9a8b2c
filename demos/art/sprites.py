"""The living things: the wanderer, birds, a butterfly, a moth, fireflies, and small scenery that stands before the hero.

A sheet holds frames of one size side by side; `SHEETS` says how wide they are.
"""

import math

import numpy as np

import flora
import masonry
from brush import Canvas, generator, mix, over, shade

# frame width, frame height, frames
SHEETS = {"hero": (40, 48, 12), "bird": (32, 24, 6), "butterfly": (16, 16, 4), "owl": (40, 40, 6)}

CLOAK = [(38, 34, 78), (52, 56, 112), (76, 92, 148), (128, 150, 190), (220, 214, 214)]
SCARF = [(120, 30, 60), (184, 46, 64), (232, 88, 70), (255, 168, 110)]
SKIN = [(150, 86, 84), (222, 150, 116), (255, 206, 160)]
HAIR = [(58, 32, 50), (110, 58, 60), (190, 108, 76)]
BOOT = [(46, 30, 48), (84, 52, 58), (140, 90, 76)]
INK = (30, 22, 44)


def leg(canvas, hip_x, hip_y, swing, lift, near):
    """A leg in two parts; swing in radians, lift bends the knee."""
    tone = 1 if near else 0
    knee = (hip_x + math.sin(swing) * 6, hip_y + math.cos(swing) * 6)
    low = swing - lift
    ankle = (knee[0] + math.sin(low) * 6, knee[1] + math.cos(low) * 6)
    canvas.limb([(hip_x, hip_y), knee, ankle], [5.6, 5.0, 4.4], INK)
    canvas.limb([(hip_x, hip_y), knee, ankle], [4.0, 3.6, 3.2], CLOAK[tone])
    canvas.limb([(ankle[0] - math.sin(low) * 3, ankle[1] - math.cos(low) * 3), ankle], [5.4, 5.4], INK)
    canvas.limb([(ankle[0] - 0.6, ankle[1] + 0.2), (ankle[0] + 3.4, ankle[1] + 0.6)], [5.0, 4.2], INK)
    canvas.limb([(ankle[0] - math.sin(low) * 3, ankle[1] - math.cos(low) * 3), ankle, (ankle[0] + 3.0, ankle[1] + 0.5)], [3.8, 3.8, 2.8],
                BOOT[tone + (1 if near else 0)])


def scarf(canvas, x, y, phase, lift):
    """The two tails of the scarf stream behind and wave."""
    for tail, (tone, low) in enumerate(((0, 2.5), (1, 0.0))):
        line = [(x - 1.9 * k, y + low + 0.25 * k * k * (0.10 - lift) + (0.35 * k) * math.sin(phase + tail * 0.9 - k * 0.75)) for k in range(8 - tail)]
        widths = [4.4 + 0.18 * k for k in range(len(line))]
        canvas.limb(line, [w + 1.4 for w in widths], INK)
        canvas.limb(line, widths, SCARF[tone])
        canvas.stroke([(px, py - 1.2) for px, py in line[1:]], 1.0, SCARF[tone + 1])


def wanderer(canvas, x, foot, near_leg, far_leg, bob, phase, flow, arm, blink=False):
    """A small traveller who faces right, a lantern in hand. Legs are (swing, lift)."""
    hip, neck = foot - 13 + bob, foot - 26 + bob
    leg(canvas, x - 0.5, hip, *far_leg, near=False)
    scarf(canvas, x - 3, neck + 1.5, phase, flow)
    leg(canvas, x + 0.5, hip, *near_leg, near=True)
    body = [(x - 4.5, neck + 1), (x + 4.5, neck + 1), (x + 7.2, hip + 4.5), (x + 1, hip + 5.6), (x - 7.0 - flow, hip + 4.2)]
    canvas.polygon([(x + (px - x) * 1.14, hip - 4 + (py - hip + 4) * 1.12) for px, py in body], INK)
    canvas.polygon(body, CLOAK[1])
    canvas.polygon([(x + 0.5, neck + 1), (x + 4.5, neck + 1), (x + 7.2, hip + 4.5), (x + 3, hip + 5.2)], CLOAK[2])
    canvas.stroke([(x + 4.3, neck + 2), (x + 6.9, hip + 4.2)], 1.2, CLOAK[4])
    canvas.stroke([(x - 6.4 - flow, hip + 3.6), (x + 1, hip + 4.9), (x + 6.8, hip + 3.8)], 1.0, (226, 176, 96))
    head = (x + 0.8, neck - 6.4)
    canvas.disc(head[0], head[1], 8.0, 7.7, INK)
    canvas.disc(head[0], head[1], 7.0, 6.7, SKIN[1])
    canvas.disc(head[0] + 2.0, head[1] + 0.2, 4.8, 5.6, SKIN[2])
    canvas.polygon([(head[0] - 7.2, head[1] + 4.4), (head[0] - 7.4, head[1] - 3), (head[0] - 3, head[1] - 7.6), (head[0] + 4.4, head[1] - 7),
                    (head[0] + 7, head[1] - 2.6), (head[0] + 2.6, head[1] - 3.4), (head[0] - 1.6, head[1] - 1.2), (head[0] - 2.6, head[1] + 3.0)], HAIR[0])
    canvas.polygon([(head[0] - 5.6, head[1] - 1), (head[0] - 2.4, head[1] - 6.4), (head[0] + 4, head[1] - 6.2), (head[0] + 5.6, head[1] - 3.6),
                    (head[0] + 1, head[1] - 4.4), (head[0] - 3, head[1] - 2)], HAIR[1])
    canvas.stroke([(head[0] - 1, head[1] - 6.8), (head[0] + 3.6, head[1] - 6.4), (head[0] + 6.2, head[1] - 3.4)], 1.1, HAIR[2])
    for ex in (1.2, 5.0):
        canvas.disc(head[0] + ex, head[1] + 1.0, 0.95, 0.4 if blink else 1.75, INK)
    if not blink:
        canvas.disc(head[0] + 5.3, head[1] + 0.4, 0.4, 0.5, (255, 255, 255))
    canvas.disc(head[0] + 2.6, head[1] + 3.4, 1.1, 0.6, (226, 120, 110))
    canvas.limb([(x - 4.6, neck + 2), (x + 4.8, neck + 2.2)], [6.4, 6.2], INK)
    canvas.limb([(x - 4.4, neck + 1.8), (x + 4.6, neck + 2.0)], [4.8, 4.6], SCARF[1])
    canvas.stroke([(x - 3, neck + 0.6), (x + 4.6, neck + 0.8)], 1.2, SCARF[2])
    hand = (x + 1 + math.sin(arm) * 9.5, neck + 5 + math.cos(arm) * 7)
    canvas.limb([(x + 1, neck + 5), hand], [5.2, 4.4], INK)
    canvas.limb([(x + 1, neck + 5), hand], [3.6, 3.0], CLOAK[2])
    canvas.disc(*hand, 1.8, 1.8, SKIN[2])
    masonry.lantern(canvas, hand[0] + 0.5, hand[1], 0.55)


def hero(frames=SHEETS["hero"]):
    """Eight steps of a walk, a jump, a fall, and standing with open and with closed eyes."""
    width, height, count = frames
    canvas = Canvas(width * count, height, 4)
    for k in range(count):
        x, turn = width * k + width // 2 + 1, 2 * math.pi * k / 8
        if k < 8:
            stride = math.sin(turn)
            near = (0.78 * stride, 1.15 * max(0.0, math.cos(turn)) + 0.12)
            far = (-0.78 * stride, 1.15 * max(0.0, -math.cos(turn)) + 0.12)
            bob = 1.1 * abs(math.sin(turn)) - 0.3
            wanderer(canvas, x, height - 2, near, far, bob, turn, 0.35, 0.9 + 0.22 * math.sin(turn))
        elif k == 8:
            wanderer(canvas, x, height - 4, (0.9, 1.5), (-0.35, 0.5), 0, 0.5, -0.35, 1.9)
        elif k == 9:
            wanderer(canvas, x, height - 4, (0.5, 0.5), (-0.6, 0.2), 0, 2.4, 1.1, 2.2)
        else:
            wanderer(canvas, x, height - 2, (0.10, 0.05), (-0.12, 0.05), 0.2 * (k - 10), 1.6, 0.0, 0.75, blink=k == 11)
    return canvas.pixels()


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
        canvas.polygon([(x - 13, y - 2), (x - 6, y - 0.6), (x - 4, y + 2.4), (x - 13.5, y + 3.2), (x - 8.5, y + 0.8)], dark)
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
                canvas.dab(x + side * reach * 0.55, y + lift * 0.5, reach * 0.5, 3.4, math.atan2(lift, side * reach), shade([down, mid, pale], 0.1 + feather * 0.13))
            canvas.stroke([(x + side * 3, y - 4), (x + side * 11, y - 4 - 6 * beat), (x + side * 18, y - 3 - 9.5 * beat)], 1.2, pale)
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
    width, height, count = frames
    canvas = Canvas(width * count, height, 4)
    for k in range(count):
        x, y, open_ = width * k + 8, 8, (1.0, 0.7, 0.3, 0.7)[k]
        for side in (-1, 1):
            canvas.dab(x + side * 3.2 * open_, y - 2.2, 4.4 * (0.35 + 0.65 * open_), 3.0, side * -0.7, (60, 36, 84))
            canvas.dab(x + side * 3.2 * open_, y - 2.2, 3.4 * (0.35 + 0.65 * open_), 2.1, side * -0.7, (120, 190, 236))
            canvas.dab(x + side * 2.4 * open_, y + 2.6, 3.2 * (0.35 + 0.65 * open_), 2.2, side * 0.8, (60, 36, 84))
            canvas.dab(x + side * 2.3 * open_, y + 2.5, 2.3 * (0.35 + 0.65 * open_), 1.5, side * 0.8, (214, 236, 255))
            canvas.disc(x + side * 4.4 * open_, y - 3.2, 0.8 * open_ + 0.1, 0.8, (255, 240, 214))
            canvas.stroke([(x, y - 3.5), (x + side * 2, y - 6.6)], 0.5, (60, 36, 84))
        canvas.dab(x, y, 4.6, 0.9, 1.57, (44, 28, 62))
    return canvas.pixels()


def glow(size, core, halo):
    """A point of light with a soft halo: the core is opaque, so that it also shows where alpha is cut off."""
    y, x = np.mgrid[0:size, 0:size] - (size - 1) / 2.0
    far = np.hypot(x, y) / (size / 2.0)
    alpha = np.clip(np.exp(-(far / 0.42) ** 2) * 0.75 * np.clip((1.0 - far) * 3, 0, 1) + (far < 0.17), 0, 1)
    return mix(np.broadcast_to(np.array(halo, float), (size, size, 3)), core, np.exp(-(far / 0.16) ** 2)), alpha


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
        canvas.polygon([(x - 1.4, 72), (x + 1.4, 72), (x + bend * 0.3, 72 - tall * 0.6), (x + bend, 72 - tall)], shade(dusk, rng.uniform(0, 0.8)))
    for _ in range(5):
        x, tall, bend = rng.normal(40, 12), rng.uniform(48, 62), rng.normal(2, 4)
        canvas.stroke([(x, 72), (x + bend, 72 - tall)], 1.1, dusk[2])
        canvas.limb([(x + bend * 0.86, 72 - tall * 0.86), (x + bend * 1.06, 72 - tall * 1.08)], [4.4, 4.0], (74, 40, 50))
        canvas.stroke([(x + bend * 0.88 + 1, 72 - tall * 0.88), (x + bend * 1.04 + 1, 72 - tall * 1.05)], 1.0, (166, 100, 76))
    return canvas.pixels()


def paint_all():
    """Name to (colour, alpha)."""
    return {"hero": hero(), "bird": bird(), "owl": owl(), "butterfly": butterfly(), "lantern": hanging_lantern(), "fern": near_fern(), "reeds": near_reeds(),
            "firefly": glow(15, (255, 255, 214), (196, 255, 120)), "spark": glow(23, (255, 252, 226), (255, 190, 100))}
