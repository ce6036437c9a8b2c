"""A blue evening in ten layers, each seamless right to left: the sky, hills, woods and a flowering meadow."""

import math

import numpy as np

from brush import Canvas, generator, mix, noise, ramp, shade, smoothstep, wave

LAYER_WIDTH, LAYER_VIEW = 640, 270


def _blue(depth):
    """Air between the viewer and a layer: depth 0 is close and dark, 1 far and pale."""
    return ramp([(10, 22, 40), (16, 50, 72), (36, 92, 112), (84, 146, 152), (156, 196, 184)], depth)


def layer_sky():
    rng = generator("layer sky")
    y, x = np.mgrid[0:LAYER_VIEW, 0:LAYER_WIDTH].astype(float)
    strokes = noise(LAYER_VIEW, LAYER_WIDTH, 9, 160, rng, 3) - 0.5
    sky = ramp(
        [(14, 30, 66), (24, 66, 104), (64, 128, 146), (150, 194, 178), (238, 226, 184)], (y + 22 * strokes) / 185
    )
    far = np.hypot(x - 330, y - 84)
    sky = mix(sky, (226, 236, 204), 0.55 * np.exp(-((far / 95) ** 2)))
    craters = smoothstep(0.52, 0.66, noise(LAYER_VIEW, LAYER_WIDTH, 18, 20, rng, 3))
    sky = mix(sky, mix((255, 248, 222), (216, 214, 190), craters), smoothstep(45.5, 44.5, far))
    for _ in range(120):
        at = int(100 * rng.random() ** 1.4), int(rng.integers(LAYER_WIDTH))
        if abs(at[1] - 330) > 52:
            sky[at] = mix(sky[at], (240, 250, 236), rng.uniform(0.2, 0.9))
    return sky, np.ones(sky.shape[:2])


def layer(number):
    """Layer 1 (far) to 9 (near), 640 x 270, seamless right to left; layer 0 is the sky."""
    if number == 0:
        return layer_sky()
    rng = generator(f"layer {number}")
    near = (number - 1) / 8.0
    crest = 118 + 130 * near**1.15
    rise = (30, 28, 24, 20, 17, 14, 12, 9, 6)[number - 1]
    line = crest - rise * (
        0.7 * wave(LAYER_WIDTH, (2, 3, 5, 8), rng, 0.7)
        + 0.6 * (1 - 2 * np.abs(wave(LAYER_WIDTH, (3, 5, 11, 19, 37), rng, 0.66))) * (number < 4)
    )
    tall = 0 if number < 3 else 7 + 62 * near**2
    canvas = Canvas(LAYER_WIDTH, LAYER_VIEW)
    tone = tuple(int(c) for c in _blue(1.0 - near**0.8))
    canvas.polygon(
        [(x, line[x % LAYER_WIDTH]) for x in range(LAYER_WIDTH + 1)] + [(LAYER_WIDTH, LAYER_VIEW), (0, LAYER_VIEW)],
        tone,
    )
    count = 0 if number < 3 else int(LAYER_WIDTH / (3 + 22 * near**2))
    for _ in range(count):
        x = rng.random() * LAYER_WIDTH
        grove = 0.35 + 0.65 * (0.5 + 0.5 * math.sin(x / LAYER_WIDTH * 2 * math.pi * 3 + number))
        height, foot = tall * grove * rng.uniform(0.45, 1.15), line[int(x)] + 3
        seed = int(rng.integers(1 << 30))
        for shift in (-LAYER_WIDTH, 0, LAYER_WIDTH):
            _pine(canvas, x + shift, foot, height, tone, number, np.random.default_rng(seed))
    if number == 9:
        _meadow_edge(canvas, line, rng)
    colour, alpha = canvas.pixels()
    y = np.mgrid[0:LAYER_VIEW, 0:LAYER_WIDTH][0]
    haze = smoothstep(0, 70, y - line[None, :]) * (0.55 if number < 9 else 0.0) * (1.0 - 0.5 * near)
    colour = mix(colour, (196, 214, 190), haze)
    return colour, alpha


def _pine(canvas, x, foot, height, tone, number, rng):
    light = tuple(int(c) for c in mix(tone, (214, 226, 186), 0.16))
    tiers = 3 if number < 6 else 7
    canvas.limb([(x, foot + 4), (x, foot - height * 0.9)], [max(0.8, height * 0.035), 0.6], tone)
    for tier in range(tiers):
        low = foot - height * (0.12 + 0.80 * tier / tiers)
        half = height * (0.20 - 0.15 * tier / tiers)
        peak = low - height * (0.95 / tiers + 0.10)
        jag = [(x - half * k / 4.0, low - (k % 2) * half * 0.22 + rng.uniform(-0.3, 0.5)) for k in range(4, -5, -1)]
        canvas.polygon([(x, peak)] + jag[::-1], tone)
        if number > 4:
            canvas.polygon([(x, peak), (x + half * 0.96, low - 0.6), (x + half * 0.45, low - half * 0.35)], light)


def _meadow_edge(canvas, line, rng):
    tones = [(8, 18, 32), (12, 32, 44), (22, 56, 62), (60, 104, 92)]
    for _ in range(1500):
        x = rng.random() * LAYER_WIDTH
        tall, bend, tone = rng.uniform(6, 24), rng.normal(1, 5), shade(tones, rng.random() ** 2)
        for shift in (-LAYER_WIDTH, 0, LAYER_WIDTH):
            canvas.polygon(
                [
                    (x + shift - 1, line[int(x)] + 14),
                    (x + shift + 1, line[int(x)] + 14),
                    (x + shift + bend, line[int(x)] + 4 - tall),
                ],
                tone,
            )
    for _ in range(60):
        x, tall = rng.random() * LAYER_WIDTH, rng.uniform(10, 24)
        for shift in (-LAYER_WIDTH, 0, LAYER_WIDTH):
            canvas.disc(x + shift, line[int(x)] + 4 - tall, 1.5, 1.3, (226, 238, 206))
