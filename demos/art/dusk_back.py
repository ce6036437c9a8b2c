"""The back plane of the dusk world: sky, sun, moon, stars, clouds and far mountains. Seamless from right to left."""

import math

import numpy as np

from brush import Canvas, generator, mix, noise, ramp, smoothstep, wave

WIDTH, HEIGHT = 1280, 440
SUN = (905, 262)
MOON = (330, 150)

SKY = [
    (0.00, (27, 24, 62)),
    (0.22, (50, 38, 92)),
    (0.42, (104, 60, 122)),
    (0.58, (186, 88, 124)),
    (0.70, (238, 136, 112)),
    (0.80, (254, 186, 124)),
    (1.00, (255, 214, 152)),
]
SUNLIGHT = (255, 196, 120)

# the foot of the range, the height and number of its peaks, their steepness, the lit and the shaded colour,
# the mist below
RANGES = [
    dict(foot=306, tall=112, count=13, steep=0.98, lit=(244, 168, 146), shaded=(146, 96, 150), mist=(244, 166, 136)),
    dict(foot=318, tall=76, count=17, steep=0.86, lit=(200, 116, 130), shaded=(106, 74, 132), mist=(208, 130, 134)),
    dict(foot=330, tall=44, count=20, steep=0.62, lit=(136, 86, 126), shaded=(76, 60, 114), mist=(144, 94, 130)),
]


def wrapped(x, centre):
    """Distance along the seamless axis."""
    return (x - centre + WIDTH / 2) % WIDTH - WIDTH / 2


def paint_sky(rng):
    y, x = np.mgrid[0:HEIGHT, 0:WIDTH].astype(float)
    strokes = noise(HEIGHT, WIDTH, 8, 80, rng, 3) - 0.5
    broad = noise(HEIGHT, WIDTH, 50, 320, rng, 2) - 0.5
    picture = ramp(SKY, (y + 22 * strokes + 26 * broad) / 330.0)
    dx, dy = wrapped(x, SUN[0]), y - SUN[1]
    glow = np.exp(-((dx / 360) ** 2) - (dy / 95) ** 2)
    picture = mix(picture, SUNLIGHT, 0.72 * glow)
    far = np.hypot(dx, dy)
    picture = mix(picture, (255, 232, 178), 0.8 * np.exp(-((far / 74) ** 2)))
    return mix(picture, (255, 248, 222), smoothstep(31.5, 29.5, far))


def paint_stars(picture, rng):
    for _ in range(300):
        x, y = int(rng.integers(WIDTH)), int(208 * rng.random() ** 1.3)
        strength = rng.random() ** 2 * (1.0 - y / (208)) ** 0.6
        tint = ramp([(255, 226, 200), (255, 255, 255), (190, 214, 255)], rng.random())
        reach = [((0, 0), 1.0)]
        if strength > 0.55:
            reach += [((1, 0), 0.4), ((-1, 0), 0.4), ((0, 1), 0.4), ((0, -1), 0.4)]
        for (ox, oy), part in reach:
            at = max(y + oy, 0), (x + ox) % WIDTH
            picture[at] = mix(picture[at], tint, 0.25 + 0.75 * strength if part == 1.0 else strength * part)


def paint_moon(picture):
    y, x = np.mgrid[0:HEIGHT, 0:WIDTH].astype(float)
    far = np.hypot(x - MOON[0], y - MOON[1])
    bite = np.hypot(x - MOON[0] + 9, y - MOON[1] + 4)
    picture = mix(picture, (188, 160, 208), 0.42 * np.exp(-((far / 52) ** 2)))
    picture = mix(picture, (112, 84, 140), 0.5 * smoothstep(18.6, 17.4, far))
    return mix(picture, (255, 244, 222), smoothstep(18.6, 17.4, far) * smoothstep(16.2, 17.6, bite))


def paint_clouds(picture, rng):
    """Long streaks high up, lit from below by the sun that has nearly gone."""
    y, x = np.mgrid[0:HEIGHT, 0:WIDTH].astype(float)
    warp = 9 * np.sin(x / WIDTH * 4 * math.pi + 1.0) + 4 * np.sin(x / WIDTH * 10 * math.pi)
    field, row = noise(HEIGHT, WIDTH, 20, 213, rng, 5), np.floor(y + warp).astype(int)
    part = y + warp - row
    field = field[row % HEIGHT, x.astype(int)] * (1 - part) + field[(row + 1) % HEIGHT, x.astype(int)] * part
    band = np.exp(-(((y - 175) / 62) ** 2)) + 0.5 * np.exp(-(((y - 80) / 26) ** 2))
    density = smoothstep(0.52, 0.74, field * (0.55 + 0.55 * band)) * np.clip(band * 1.4, 0, 1)
    underside = np.clip((density - np.roll(density, -5, axis=0)) * 2.2, 0, 1)
    near = np.exp(-((wrapped(x, SUN[0]) / 420) ** 2))
    body = mix(ramp([(70, 48, 104), (120, 66, 122), (196, 98, 128)], (y - 60) / 170), (232, 128, 124), 0.5 * near)
    light = mix(body, mix((246, 150, 140), (255, 214, 150), near), underside)
    return mix(picture, light, 0.85 * density)


def paint_cloud_banks(picture, rng):
    """Heaped clouds on the horizon, each a few hundred dabs, bright on the side of the sun."""
    canvas = Canvas(WIDTH * 2, HEIGHT)
    for base_x, base_y, span in ((120, 236, 130), (560, 228, 150), (700, 244, 90), (1120, 232, 140), (1010, 246, 70)):
        side = 1.0 if wrapped(base_x, SUN[0]) < 0 else -1.0
        puffs = sorted(((rng.normal(0, 0.42), rng.random() ** 1.5) for _ in range(46)), key=lambda p: -p[1])
        for along, up in puffs:
            room = max(0.0, 1.0 - abs(along) * 0.9)
            cx, cy = base_x + along * span, base_y - up * span * 0.30 * room
            radius = (5 + 13 * rng.random()) * (0.45 + 0.55 * room)
            for _ in range(44):
                a, r = rng.random() * 2 * math.pi, radius * math.sqrt(rng.random())
                px, py = cx + r * math.cos(a) * 1.25, cy + r * math.sin(a) * 0.72
                if py > base_y:
                    continue
                light = (
                    0.30
                    + 0.22 * side * math.cos(a) * r / radius
                    - 0.30 * math.sin(a) * r / radius
                    + 0.3 * up
                    + rng.normal(0, 0.03)
                )
                tone = ramp([(122, 74, 134), (178, 94, 136), (236, 140, 134), (255, 190, 146), (255, 228, 188)], light)
                for shift in (0, WIDTH):
                    canvas.dab(
                        px + shift,
                        py,
                        2.4 + radius * 0.16,
                        1.3 + radius * 0.09,
                        rng.normal(0, 0.25),
                        tuple(int(c) for c in tone),
                    )
    colour, alpha = canvas.pixels()
    for part in (slice(0, WIDTH), slice(WIDTH, 2 * WIDTH)):
        picture = mix(picture, colour[:, part], alpha[:, part] * 0.82)
    return picture


def paint_range(picture, shape, rng):
    """Peaks from the tallest to the lowest, each with a side in the sun and a side in its own shadow."""
    y, x = np.mgrid[0:HEIGHT, 0:WIDTH].astype(float)
    crags = noise(HEIGHT, WIDTH, 10, 10, rng, 3) - 0.5
    grain = noise(HEIGHT, WIDTH, 25, 16, rng, 3) - 0.5
    profile = 2.4 * wave(WIDTH, (31, 53, 89, 131), rng, 0.8) + 4.0 * wave(WIDTH, (9, 17), rng)
    near = np.exp(-((wrapped(x, SUN[0]) / 260) ** 2))
    mist = mix(shape["mist"], SUNLIGHT, 0.45 * near)
    centres = (np.arange(shape["count"]) + rng.uniform(-0.36, 0.36, shape["count"])) * WIDTH / shape["count"]
    heights = shape["tall"] * (0.35 + 0.65 * rng.random(shape["count"]))
    heights *= 1.0 - 0.62 * np.exp(-((wrapped(centres, SUN[0]) / 120) ** 2))
    for place in np.argsort(-heights):
        centre, height = centres[place], heights[place]
        steep = shape["steep"] * rng.uniform(0.8, 1.2)
        dx = wrapped(x, centre)
        crest = shape["foot"] - height + steep * np.abs(dx) ** 0.94 + profile * smoothstep(0, 18, np.abs(dx))
        depth = y - crest
        summit = y - (shape["foot"] - height)
        toward = np.clip(wrapped(SUN[0], centre) / 90, -1, 1)
        edge = (6 * np.sin(summit / 8.0 + place) + 9 * np.sin(summit / 21.0 + 2 * place)) * smoothstep(0, 40, summit)
        lit = smoothstep(
            -2.5, 2.5, toward * (dx + edge) + 34 * crags * smoothstep(0, 26, summit) - 4 * (1 - abs(toward))
        )
        lit = np.clip(
            lit + 0.5 * smoothstep(0.12, 0.3, grain) * (1 - lit) - 0.45 * smoothstep(0.1, 0.3, -grain) * lit, 0, 1
        )
        rock = mix(shape["shaded"], shape["lit"], lit)
        rock = mix(rock, mist, smoothstep(10, 0.95 * shape["tall"] + 20, summit) * 0.85 + 0.15 * near)
        picture = mix(picture, rock, smoothstep(-0.6, 0.6, depth) * (np.abs(dx) < WIDTH * 0.4))
    return picture


def paint_forest(picture, base, rise, tall, colour, mist, rng):
    """A far wood: pointed trees side by side along a rolling line."""
    canvas = Canvas(WIDTH, HEIGHT)
    line = base - rise * wave(WIDTH, (1, 3, 4, 7), rng, 0.6)
    bottom = [(WIDTH, HEIGHT), (0, HEIGHT)]
    canvas.polygon([(x, line[x % WIDTH]) for x in range(WIDTH + 1)] + bottom, colour)
    for _ in range(WIDTH // 3):
        x = rng.random() * WIDTH
        height = tall * (0.35 + rng.random() ** 2)
        foot = line[int(x)] + 4
        tone = tuple(int(c) for c in mix(colour, mist, rng.random() * 0.16))
        for shift in (-WIDTH, 0, WIDTH):
            for tier in range(3):
                top = foot - height * (1.0 - tier * 0.26)
                half = height * (0.10 + 0.06 * tier)
                canvas.polygon(
                    [
                        (x + shift, top),
                        (x + shift + half, top + height * 0.48),
                        (x + shift - half, top + height * 0.48),
                    ],
                    tone,
                )
    tint, alpha = canvas.pixels()
    y = np.mgrid[0:HEIGHT, 0:WIDTH][0].astype(float)
    tint = mix(tint, mist, 0.75 * smoothstep(0, 60, y - line[None, :]))
    return mix(picture, tint, alpha)


def paint():
    rng = generator("dusk back")
    picture = paint_sky(rng)
    paint_stars(picture, rng)
    picture = paint_moon(picture)
    picture = paint_clouds(picture, rng)
    picture = paint_cloud_banks(picture, rng)
    for shape in RANGES:
        picture = paint_range(picture, shape, rng)
    picture = paint_forest(picture, 318, 10, 17, (78, 60, 110), (136, 88, 128), rng)
    picture = paint_forest(picture, 346, 10, 26, (52, 46, 92), (86, 64, 112), rng)
    return picture, np.ones(picture.shape[:2])
