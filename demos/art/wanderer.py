"""The wanderer: a small traveller with a red scarf and a lantern."""

import math

import masonry
from brush import Canvas

SHEET = (40, 48, 12)  # frame width, frame height, frames

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
    canvas.limb(
        [(ankle[0] - math.sin(low) * 3, ankle[1] - math.cos(low) * 3), ankle, (ankle[0] + 3.0, ankle[1] + 0.5)],
        [3.8, 3.8, 2.8],
        BOOT[tone + (1 if near else 0)],
    )


def scarf(canvas, x, y, phase, lift):
    """The two tails of the scarf stream behind and wave."""
    for tail, (tone, low) in enumerate(((0, 2.5), (1, 0.0))):
        line = [
            (x - 1.9 * k, y + low + 0.25 * k * k * (0.10 - lift) + (0.35 * k) * math.sin(phase + tail * 0.9 - k * 0.75))
            for k in range(8 - tail)
        ]
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
    body = [
        (x - 4.5, neck + 1),
        (x + 4.5, neck + 1),
        (x + 7.2, hip + 4.5),
        (x + 1, hip + 5.6),
        (x - 7.0 - flow, hip + 4.2),
    ]
    canvas.polygon([(x + (px - x) * 1.14, hip - 4 + (py - hip + 4) * 1.12) for px, py in body], INK)
    canvas.polygon(body, CLOAK[1])
    canvas.polygon([(x + 0.5, neck + 1), (x + 4.5, neck + 1), (x + 7.2, hip + 4.5), (x + 3, hip + 5.2)], CLOAK[2])
    canvas.stroke([(x + 4.3, neck + 2), (x + 6.9, hip + 4.2)], 1.2, CLOAK[4])
    canvas.stroke([(x - 6.4 - flow, hip + 3.6), (x + 1, hip + 4.9), (x + 6.8, hip + 3.8)], 1.0, (226, 176, 96))
    head = (x + 0.8, neck - 6.4)
    canvas.disc(head[0], head[1], 8.0, 7.7, INK)
    canvas.disc(head[0], head[1], 7.0, 6.7, SKIN[1])
    canvas.disc(head[0] + 2.0, head[1] + 0.2, 4.8, 5.6, SKIN[2])
    canvas.polygon(
        [
            (head[0] - 7.2, head[1] + 4.4),
            (head[0] - 7.4, head[1] - 3),
            (head[0] - 3, head[1] - 7.6),
            (head[0] + 4.4, head[1] - 7),
            (head[0] + 7, head[1] - 2.6),
            (head[0] + 2.6, head[1] - 3.4),
            (head[0] - 1.6, head[1] - 1.2),
            (head[0] - 2.6, head[1] + 3.0),
        ],
        HAIR[0],
    )
    canvas.polygon(
        [
            (head[0] - 5.6, head[1] - 1),
            (head[0] - 2.4, head[1] - 6.4),
            (head[0] + 4, head[1] - 6.2),
            (head[0] + 5.6, head[1] - 3.6),
            (head[0] + 1, head[1] - 4.4),
            (head[0] - 3, head[1] - 2),
        ],
        HAIR[1],
    )
    canvas.stroke(
        [(head[0] - 1, head[1] - 6.8), (head[0] + 3.6, head[1] - 6.4), (head[0] + 6.2, head[1] - 3.4)], 1.1, HAIR[2]
    )
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


def hero(frames=SHEET):
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
