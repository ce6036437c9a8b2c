"""The front plane of the dusk world: a long walk through hills, ruins and over a lake, seamless right to left.

The sky is left transparent.
"""

import math

import numpy as np

import dusk_land as land
import flora
import masonry
from brush import Canvas, closed, generator, mix, noise, over, ramp, shade, smoothstep

WIDTH, HEIGHT = land.WIDTH, land.HEIGHT
EARTH = [(0.00, (104, 74, 84)), (0.10, (86, 58, 78)), (0.35, (62, 44, 70)), (0.70, (42, 34, 60)), (1.00, (28, 26, 50))]
BLOSSOMS = [
    [(198, 120, 190), (255, 196, 232)],
    [(150, 170, 240), (222, 236, 255)],
    [(236, 170, 110), (255, 236, 180)],
    [(222, 96, 128), (255, 170, 170)],
]
CRYSTALS = [120, 400, 720, 985, 1650, 1900, 2180, 2420]
WATER = [(0.0, (250, 176, 132)), (0.18, (206, 116, 132)), (0.5, (112, 74, 128)), (1.0, (46, 44, 92))]


def far_layer(line, rng):
    """A low hill in the haze with trees on it; mist gathers at its foot."""
    canvas = Canvas(WIDTH, HEIGHT, wraps=True)
    x = np.arange(WIDTH + 1)
    crest = closed(
        424 + 9 * np.sin(x / 131.0) + 6 * np.sin(x / 57.0 + 2.0) + 0.35 * (line[np.clip(x, 0, WIDTH - 1)] - 440)
    )
    hill = lambda at: float(np.interp(at, x, crest))
    for at, height in land.FAR_TREES:
        flora.far_tree(canvas, at, hill(at), height, rng)
    canvas.polygon([(a, b) for a, b in zip(x[::4], crest[::4])] + [(WIDTH, HEIGHT), (0, HEIGHT)], (70, 62, 110))
    for at in range(0, WIDTH, 7):
        flora.clump(
            canvas,
            at + rng.uniform(-4, 4),
            hill(at) + rng.uniform(0, 6),
            rng.uniform(5, 11),
            flora.LEAVES["far"],
            -0.02,
            rng,
            2.8,
        )
    colour, alpha = canvas.pixels()
    y = np.mgrid[0:HEIGHT, 0:WIDTH][0]
    return mix(colour, (158, 104, 136), 0.7 * smoothstep(-60, 60, y - crest[None, :WIDTH])), alpha


def stone_layer(line, rng):
    """What stands behind the path: arches, trees, the pillars of the ledges."""
    canvas = Canvas(WIDTH, HEIGHT, wraps=True)
    foot = lambda x: float(line[int(min(max(x, 0), WIDTH - 1))])
    for left, right, top in ((668, 780, 296), (790, 880, 318), (1890, 2010, 262)):
        masonry.arch(canvas, left, right, top, max(foot(left), foot(right)), rng)
    for x, height, kind in land.TREES:
        flora.tree(canvas, x, foot(x), height, kind, rng)
    for left, right, top in land.SLABS:
        masonry.slab(canvas, left, right, top, foot((left + right) / 2), rng)
    return canvas


def bushes(canvas, line, rng):
    for _ in range(52):
        x = rng.uniform(0, WIDTH)
        if land.WATER["left"] - 30 < x < land.WATER["right"] + 30:
            continue
        kind = "oak" if rng.random() < 0.8 else "maple"
        for _ in range(4):
            flora.clump(
                canvas,
                x + rng.normal(0, 15),
                line[int(x)] - rng.uniform(0, 7),
                rng.uniform(6, 13),
                flora.LEAVES[kind],
                rng.uniform(-0.1, 0.06),
                rng,
                3.2,
            )


def earth_layer(line, rng):
    """Soil under the turf: strata that follow the ground, darker with depth, and buried stones."""
    y, x = np.mgrid[0:HEIGHT, 0:WIDTH].astype(float)
    depth = y - line[None, :]
    strata = noise(HEIGHT, WIDTH, 60, 32, rng, 3)[(depth * 3).astype(int) % HEIGHT, x.astype(int)] - 0.5
    blotch = noise(HEIGHT, WIDTH, 12, 16, rng, 3) - 0.5
    colour = ramp(EARTH, (depth + 26 * strata + 20 * blotch) / 120.0)
    stones = Canvas(WIDTH, HEIGHT, wraps=True)
    for _ in range(620):
        sx = rng.uniform(0, WIDTH)
        sy = line[int(sx)] + 20 + 95 * rng.random() ** 1.2
        size, fade = rng.uniform(2.5, 10), 0.34 - 0.0026 * (sy - line[int(sx)])
        angles = np.sort(rng.uniform(0, 2 * math.pi, 9))
        shape = [(sx + size * 1.2 * math.cos(a), sy + size * 0.74 * math.sin(a)) for a in angles]
        stones.polygon(shape, shade(masonry.STONE, fade - 0.12))
        stones.polygon(
            [(px * 0.78 + (sx + size * 0.1) * 0.22, py * 0.72 + (sy - size * 0.24) * 0.28) for px, py in shape],
            shade(masonry.STONE, fade + 0.06),
        )
        stones.stroke(
            [(px, py) for px, py in shape if py < sy - size * 0.2][:4], 0.8, shade(masonry.STONE, fade + 0.26)
        )
    for cx in CRYSTALS:
        crystals(stones, cx, line[cx] + 62, rng)
    s_colour, s_alpha = stones.pixels()
    return over(colour, smoothstep(-0.5, 0.5, depth), s_colour, s_alpha * (depth > 14))


def crystals(canvas, x, y, rng):
    """A seam of blue crystals deep in the soil."""
    for turn in (-0.9, 0.8, -0.4, 0.35, 0.0):
        length, half = rng.uniform(11, 19) * (1.0 - 0.3 * abs(turn)), rng.uniform(2.2, 3.4)
        up, out = (math.sin(turn), -math.cos(turn)), (math.cos(turn), math.sin(turn))
        at = lambda along, side: (x + up[0] * along + out[0] * side, y + up[1] * along + out[1] * side)
        canvas.polygon(
            [at(0, -half), at(length * 0.75, -half), at(length, 0), at(length * 0.75, half), at(0, half)],
            (64, 110, 168),
        )
        canvas.polygon([at(0, 0), at(length, 0), at(length * 0.75, half), at(0, half)], (132, 206, 226))
        canvas.stroke([at(0, -half), at(length * 0.75, -half), at(length, 0)], 0.8, (206, 244, 250))


def turf_layer(line, rng):
    canvas = Canvas(WIDTH, HEIGHT, wraps=True)
    at = lambda x: float(line[int(min(max(x, 0), WIDTH - 1))])
    for left, right in ((0, land.WATER["left"]), (land.WATER["right"], WIDTH)):
        flora.fringe(canvas, lambda x: at(x) - 2, left, right, rng)
        flora.grass(canvas, at, left, right, rng)
        for _ in range(int((right - left) * 0.085)):
            x = rng.normal(rng.choice([180, 420, 860, 1060, 1620, 1800, 2160, 2420]), 70)
            if left + 4 < x < right - 4:
                flora.flower(canvas, x, at(x) + 3, rng, BLOSSOMS)
    for x in (92, 104, 232, 470, 478, 1030, 1038, 1586, 2094, 2356, 2366):
        flora.mushroom(canvas, x, at(x) + 2, rng.uniform(6, 10), rng)
    for x in (36, 300, 440, 528, 800, 930, 1076, 1566, 1720, 1990, 2120, 2300, 2440, 2530):
        flora.fern(canvas, x, at(x) + 4, rng.uniform(14, 22), rng)
    return canvas


def paint_water(colour, alpha, rng):
    """The lake mirrors the evening sky and, wavering, what stands above it."""
    level, left, right = land.WATER["level"], land.WATER["left"] - 24, land.WATER["right"] + 24
    y, x = np.mgrid[level:HEIGHT, left:right].astype(float)
    depth = y - level
    sway = (2.2 * np.sin(y * 0.9 + x * 0.03) + 1.6 * np.sin(y * 0.37 - x * 0.05)) * (0.4 + depth / 40)
    from_y = np.clip(level - 1 - depth * 1.7, 0, HEIGHT - 1).astype(int)
    from_x = np.clip(x + sway, 0, WIDTH - 1).astype(int)
    sky = ramp(WATER, depth / 58.0)
    glint = smoothstep(0.62, 0.80, noise(HEIGHT - level, right - left, 3, 44, rng, 2)) * smoothstep(0, 8, depth)
    picture = mix(sky, mix(colour[from_y, from_x], (96, 66, 118), 0.30), 0.58 * alpha[from_y, from_x])
    picture = mix(picture, (255, 214, 168), 0.75 * glint * np.exp(-depth / 50))
    picture = mix(picture, (255, 226, 190), 0.7 * (depth < 1))
    return picture, (slice(level, HEIGHT), slice(left, right))


def lilies(canvas, line, rng):
    for _ in range(26):
        x, y = (
            rng.uniform(land.WATER["left"] + 14, land.WATER["right"] - 14),
            land.WATER["level"] + 8 + 44 * rng.random(),
        )
        if y > line[int(x)] - 8:
            continue
        size = 3 + 5 * (y - land.WATER["level"]) / 50
        canvas.disc(x, y, size, size * 0.36, (30, 58, 74))
        canvas.disc(x + 0.6, y - 0.5, size * 0.88, size * 0.28, (70, 112, 88))
        if rng.random() < 0.3:
            for k in range(5):
                canvas.dab(
                    x + (k - 2) * 1.1,
                    y - 2.2,
                    2.3,
                    0.9,
                    math.pi / 2 + (2 - k) * 0.38,
                    shade(BLOSSOMS[0], 0.3 + 0.17 * k),
                )


def light_crystals(colour, line):
    for cx in CRYSTALS:
        y0, x0 = int(line[cx]) + 14, max(0, cx - 70)
        part = colour[y0:HEIGHT, x0 : cx + 70]
        y, x = np.mgrid[y0 : y0 + part.shape[0], x0 : x0 + part.shape[1]].astype(float)
        near = 0.8 * np.exp(-((x - cx) ** 2 + (y - line[cx] - 55) ** 2) / 34**2) * smoothstep(14, 40, y - line[cx])
        part[:] = mix(
            part, np.clip(part * [0.9, 1.35, 1.5] + [0, 18, 34], 0, 255), near * smoothstep(70, 50, np.abs(x - cx))
        )


def light_lanterns(colour, alpha, flames):
    """Warm light on whatever is near a flame, and a soft halo in the air around it."""
    for fx, fy in flames:
        x0, x1, y0, y1 = (
            max(0, int(fx) - 110),
            min(WIDTH, int(fx) + 110),
            max(0, int(fy) - 100),
            min(HEIGHT, int(fy) + 100),
        )
        y, x = np.mgrid[y0:y1, x0:x1].astype(float)
        far = np.hypot(x - fx, y - fy)
        part, a = colour[y0:y1, x0:x1], alpha[y0:y1, x0:x1]
        warm = np.clip(part * np.array([1.9, 1.5, 1.0]) + np.array([70, 36, 4]), 0, 255)
        lit = mix(part, warm, 0.62 * np.exp(-((far / 46) ** 2)))
        lit = mix(lit, (255, 206, 120), 0.34 * np.exp(-((far / 13) ** 2)) * (far > 5))
        halo = 0.28 * np.exp(-((far / 15) ** 2)) + 0.17 * np.exp(-((far / 38) ** 2))
        colour[y0:y1, x0:x1], alpha[y0:y1, x0:x1] = over(
            np.broadcast_to((255.0, 196.0, 112.0), part.shape), halo * (halo > 0.012), lit, a
        )


def paint():
    """The plane as (colour, alpha)."""
    rng = generator("dusk front")
    line = land.ground()
    colour, alpha = far_layer(line, rng)
    standing = stone_layer(line, rng)
    bushes(standing, line, rng)
    colour, alpha = over(colour, alpha, *standing.pixels())
    colour, alpha = over(colour, alpha, *earth_layer(line, rng))
    near = turf_layer(line, rng)
    masonry.bridge(
        near, lambda x: float(land.bridge(x)), land.BRIDGE["left"], land.BRIDGE["right"], land.WATER["level"], rng
    )
    flames = [masonry.lantern_post(near, x, float(land.walkway()[x])) for x in land.LANTERNS]
    over_all = near.pixels()
    behind = over(colour, alpha, *over_all)
    water, place = paint_water(*behind, rng)
    wet = (land.ground()[None, place[1]] > np.arange(place[0].start, HEIGHT)[:, None] + 0.5).astype(float)
    colour[place], alpha[place] = over(colour[place], alpha[place], water, wet)
    colour, alpha = over(colour, alpha, *over_all)
    floating = Canvas(WIDTH, HEIGHT, wraps=True)
    lilies(floating, line, rng)
    colour, alpha = over(colour, alpha, *floating.pixels())
    light_crystals(colour, line)
    light_lanterns(colour, alpha, flames)
    return colour, alpha
