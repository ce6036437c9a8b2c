"""Fog with soft alpha, and a still evening over the sea."""

import math

import numpy as np

from brush import Canvas, generator, mix, noise, ramp, smoothstep


def fog():
    """Billows of mist, 512 x 160, seamless right to left."""
    rng = generator("fog")
    y = np.mgrid[0:160, 0:512][0] / 160.0
    field = noise(160, 512, 40, 128, rng, 5)
    alpha = smoothstep(0.30, 0.78, field) * smoothstep(0.0, 0.45, y) * smoothstep(1.0, 0.70, y) * 0.86
    light = np.clip((field - np.roll(field, -6, axis=0)) * 4 + 0.5, 0, 1)
    return ramp([(196, 150, 186), (246, 208, 200), (255, 240, 222)], light), np.round(alpha * 42) / 42.0


def sea():
    """A great sun over the sea, 480 x 270."""
    rng = generator("sea")
    height, width, shore = 270, 480, 186
    y, x = np.mgrid[0:height, 0:width].astype(float)
    strokes = noise(height, width, 7, 120, rng, 3) - 0.5
    sky = ramp(
        [(44, 40, 96), (112, 62, 128), (214, 98, 122), (250, 160, 112), (255, 214, 150)], (y + 20 * strokes) / shore
    )
    far = np.hypot(x - 250, y - 150)
    sky = mix(sky, (255, 220, 150), 0.75 * np.exp(-((far / 120) ** 2)))
    sky = mix(sky, ramp([(255, 250, 224), (255, 206, 120)], (y - 95) / 110), smoothstep(56, 54.5, far))
    bands = smoothstep(0.56, 0.66, noise(height, width, 9, 160, rng, 2)) * smoothstep(40, 120, y)
    sky = mix(sky, (246, 140, 116), 0.55 * bands)
    deep = (y - shore) / (height - shore)
    mirror = sky[np.clip(shore - (y - shore) * 1.9, 0, height - 1).astype(int), x.astype(int)]
    wavelets = noise(height, width, 3, 30, rng, 2)
    water = mix(mirror * [0.72, 0.66, 0.82], (52, 44, 104), 0.35 + 0.35 * deep)
    path = np.exp(-(((x - 250) / (26 + 80 * deep)) ** 2))
    water = mix(
        water, (255, 216, 150), smoothstep(0.74 - 0.34 * path, 0.84 - 0.3 * path, wavelets) * (0.22 + 0.78 * path)
    )
    picture = np.where((y >= shore)[..., None], water, sky)
    isles = Canvas(width, height)
    for cx, half, tall, tone in (
        (70, 120, 40, (126, 70, 120)),
        (440, 90, 58, (112, 62, 116)),
        (20, 80, 66, (86, 52, 106)),
        (380, 46, 18, (138, 76, 120)),
    ):
        crest = [
            (cx + half * t, shore + 1 - tall * (1 - abs(t)) ** 0.8 + 4 * math.sin(t * 9 + cx))
            for t in np.linspace(-1, 1, 40)
        ]
        isles.polygon(
            [(a, min(b, shore + 1)) for a, b in crest] + [(cx + half, shore + 1), (cx - half, shore + 1)], tone
        )
    isles.polygon([(188, 196), (216, 196), (212, 202), (192, 202)], (58, 36, 70))
    isles.stroke([(202, 196), (202, 160)], 1.2, (58, 36, 70))
    isles.polygon([(203, 162), (219, 192), (203, 193)], (255, 226, 190))
    isles.polygon([(201, 166), (191, 192), (201, 193)], (222, 150, 140))
    colour, alpha = isles.pixels()
    return mix(picture, colour, alpha), np.ones((height, width))
