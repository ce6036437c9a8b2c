"""Smaller pictures for single demos: a pond that repeats, fog, a still sea, ten layers of a blue evening, frames."""

import math

import numpy as np

import flora
import masonry
from brush import Canvas, generator, mix, noise, over, ramp, shade, smoothstep, wave

POND = 176
LAYER_WIDTH, LAYER_VIEW = 640, 270


# --- the pond: one tile, seamless both ways -----------------------------------------------------------------------

def _tiled(paint):
    """Calls paint(ox, oy) once for every neighbour of the tile, so that nothing is cut at its edges."""
    for oy in (-POND, 0, POND):
        for ox in (-POND, 0, POND):
            paint(ox, oy)


def _koi(canvas, x, y, heading, size, rng):
    red = [(140, 44, 48), (222, 92, 56), (255, 158, 96)]
    white = [(168, 150, 168), (236, 224, 222), (255, 250, 240)]
    coat, spots = (white, red) if rng.random() < 0.6 else (red, white)
    bend = rng.uniform(-0.5, 0.5)
    at = lambda s, side: (x + size * (s * math.cos(heading) - (side + bend * s * s) * math.sin(heading)),
                          y + size * (s * math.sin(heading) + (side + bend * s * s) * math.cos(heading)))
    for side in (-1, 1):
        canvas.polygon([at(0.35, side * 0.2), at(0.05, side * 0.62), at(0.0, side * 0.2)], coat[0])
    canvas.polygon([at(-0.9, 0), at(-1.5, 0.34), at(-1.28, 0), at(-1.5, -0.34)], coat[0])
    spine = [(-1.0, 0.10), (-0.6, 0.36), (-0.1, 0.56), (0.4, 0.60), (0.8, 0.44), (1.0, 0.24)]
    canvas.limb([at(s, 0) for s, _ in spine], [w * size for _, w in spine], coat[1])
    canvas.limb([at(s, -0.05) for s, _ in spine], [w * size * 0.4 for _, w in spine], coat[2])
    for s in rng.uniform(-0.6, 0.7, 3):
        canvas.dab(*at(s, rng.uniform(-0.1, 0.1)), size * 0.24, size * 0.16, heading + rng.normal(0, 0.4), spots[1])
    for side in (-1, 1):
        canvas.disc(*at(0.82, side * 0.17), size * 0.06, size * 0.06, (28, 20, 36))


def _lily_pad(canvas, x, y, size, cut, blossom, rng):
    around = [cut + 0.28 + k * (2 * math.pi - 0.56) / 24 for k in range(25)]
    rim = [(x + size * math.cos(a), y + size * math.sin(a) * 0.94) for a in around]
    canvas.polygon([(px + 2, py + 3.5) for px, py in rim] + [(x + 2, y + 3.5)], (16, 42, 68))
    canvas.polygon(rim + [(x, y)], (40, 92, 82))
    canvas.polygon([(x + (px - x) * 0.88 + 0.5, y + (py - y) * 0.88 - 0.6) for px, py in rim] + [(x, y)], (62, 122, 84))
    for a in around[1:-1:3]:
        canvas.stroke([(x, y), (x + size * 0.84 * math.cos(a), y + size * 0.78 * math.sin(a))], 0.8, (104, 158, 96))
    canvas.stroke([rim[k] for k in range(14, 24)], 1.0, (166, 196, 112))
    if blossom:
        tones = [(176, 84, 150), (232, 142, 190), (255, 206, 226), (255, 244, 244)]
        for ring, (reach, count) in enumerate(((0.62, 8), (0.44, 7), (0.26, 5))):
            for k in range(count):
                a = k * 2 * math.pi / count + ring * 0.4
                canvas.dab(x + size * reach * 0.6 * math.cos(a), y - 2 + size * reach * 0.5 * math.sin(a), size * reach * 0.6, size * 0.15, a,
                           shade(tones, 0.25 + 0.25 * ring - 0.18 * math.sin(a)))
        canvas.disc(x, y - 2, size * 0.11, size * 0.1, (255, 214, 110))


def pond():
    rng = generator("pond")
    ripple = noise(POND, POND, 22, 22, rng, 2)
    net = np.maximum(1.0 - 3.2 * np.abs(noise(POND, POND, 16, 16, rng, 2) - 0.5), 1.0 - 3.2 * np.abs(noise(POND, POND, 22, 22, rng, 2) - 0.5))
    picture = ramp([(18, 52, 92), (26, 84, 116), (44, 124, 140)], ripple)
    picture = mix(picture, (134, 210, 204), 0.30 * smoothstep(0.80, 1.0, net))
    under, top = Canvas(POND, POND), Canvas(POND, POND)
    for x, y, heading, size in ((42, 118, -0.6, 17), (128, 52, 2.4, 15), (96, 160, 0.3, 13)):
        seed = int(rng.integers(1 << 30))
        _tiled(lambda ox, oy: under.limb([(x + ox + 5 - 14 * math.cos(heading), y + oy + 7 - 14 * math.sin(heading)), (x + ox + 5 + 12 * math.cos(heading), y + oy + 7 + 12 * math.sin(heading))], [3, 8], (18, 54, 88)))
        _tiled(lambda ox, oy: _koi(under, x + ox, y + oy, heading, size, np.random.default_rng(seed)))
    for x, y, size, cut, blossom in ((40, 40, 22, 0.8, True), (72, 58, 13, 2.9, False), (140, 118, 20, 4.1, False), (166, 140, 12, 1.2, False),
                                     (112, 98, 11, 5.4, True), (16, 160, 15, 0.2, False)):
        _tiled(lambda ox, oy: _lily_pad(top, x + ox, y + oy, size, cut, blossom, rng))
    for x, y, a in rng.uniform(0, 1, (9, 3)):
        _tiled(lambda ox, oy: top.dab(x * POND + ox, y * POND + oy, 3.0, 1.5, a * 6, (250, 196, 212)))
    colour, alpha = under.pixels()
    picture = mix(picture, mix(colour, (40, 116, 136), 0.16), alpha)
    colour, alpha = top.pixels()
    return mix(picture, colour, alpha), np.ones((POND, POND))


# --- fog, for per-pixel alpha ----------------------------------------------------------------------------------------

def fog():
    """Billows of mist, 512 x 160, seamless right to left."""
    rng = generator("fog")
    y = np.mgrid[0:160, 0:512][0] / 160.0
    field = noise(160, 512, 40, 128, rng, 5)
    alpha = smoothstep(0.30, 0.78, field) * smoothstep(0.0, 0.45, y) * smoothstep(1.0, 0.70, y) * 0.86
    light = np.clip((field - np.roll(field, -6, axis=0)) * 4 + 0.5, 0, 1)
    return ramp([(196, 150, 186), (246, 208, 200), (255, 240, 222)], light), np.round(alpha * 42) / 42.0


# --- a still picture -----------------------------------------------------------------------------------------------

def sea():
    """A great sun over the sea, 480 x 270."""
    rng = generator("sea")
    height, width, shore = 270, 480, 186
    y, x = np.mgrid[0:height, 0:width].astype(float)
    strokes = noise(height, width, 7, 120, rng, 3) - 0.5
    sky = ramp([(44, 40, 96), (112, 62, 128), (214, 98, 122), (250, 160, 112), (255, 214, 150)], (y + 20 * strokes) / shore)
    far = np.hypot(x - 250, y - 150)
    sky = mix(sky, (255, 220, 150), 0.75 * np.exp(-(far / 120) ** 2))
    sky = mix(sky, ramp([(255, 250, 224), (255, 206, 120)], (y - 95) / 110), smoothstep(56, 54.5, far))
    bands = smoothstep(0.56, 0.66, noise(height, width, 9, 160, rng, 2)) * smoothstep(40, 120, y)
    sky = mix(sky, (246, 140, 116), 0.55 * bands)
    deep = (y - shore) / (height - shore)
    mirror = sky[np.clip(shore - (y - shore) * 1.9, 0, height - 1).astype(int), x.astype(int)]
    wavelets = noise(height, width, 3, 30, rng, 2)
    water = mix(mirror * [0.72, 0.66, 0.82], (52, 44, 104), 0.35 + 0.35 * deep)
    path = np.exp(-((x - 250) / (26 + 80 * deep)) ** 2)
    water = mix(water, (255, 216, 150), smoothstep(0.74 - 0.34 * path, 0.84 - 0.3 * path, wavelets) * (0.22 + 0.78 * path))
    picture = np.where((y >= shore)[..., None], water, sky)
    isles = Canvas(width, height)
    for cx, half, tall, tone in ((70, 120, 40, (126, 70, 120)), (440, 90, 58, (112, 62, 116)), (20, 80, 66, (86, 52, 106)), (380, 46, 18, (138, 76, 120))):
        crest = [(cx + half * t, shore + 1 - tall * (1 - abs(t)) ** 0.8 + 4 * math.sin(t * 9 + cx)) for t in np.linspace(-1, 1, 40)]
        isles.polygon([(a, min(b, shore + 1)) for a, b in crest] + [(cx + half, shore + 1), (cx - half, shore + 1)], tone)
    isles.polygon([(188, 196), (216, 196), (212, 202), (192, 202)], (58, 36, 70))
    isles.stroke([(202, 196), (202, 160)], 1.2, (58, 36, 70))
    isles.polygon([(203, 162), (219, 192), (203, 193)], (255, 226, 190))
    isles.polygon([(201, 166), (191, 192), (201, 193)], (222, 150, 140))
    colour, alpha = isles.pixels()
    return mix(picture, colour, alpha), np.ones((height, width))


# --- ten layers of a blue evening ------------------------------------------------------------------------------------

def _blue(depth):
    """Air between the viewer and a layer: depth 0 is close and dark, 1 far and pale."""
    return ramp([(10, 22, 40), (16, 50, 72), (36, 92, 112), (84, 146, 152), (156, 196, 184)], depth)


def layer_sky():
    rng = generator("layer sky")
    y, x = np.mgrid[0:LAYER_VIEW, 0:LAYER_WIDTH].astype(float)
    strokes = noise(LAYER_VIEW, LAYER_WIDTH, 9, 160, rng, 3) - 0.5
    sky = ramp([(14, 30, 66), (24, 66, 104), (64, 128, 146), (150, 194, 178), (238, 226, 184)], (y + 22 * strokes) / 185)
    far = np.hypot(x - 330, y - 84)
    sky = mix(sky, (226, 236, 204), 0.55 * np.exp(-(far / 95) ** 2))
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
    crest = 118 + 130 * near ** 1.15
    rise = (30, 28, 24, 20, 17, 14, 12, 9, 6)[number - 1]
    line = crest - rise * (0.7 * wave(LAYER_WIDTH, (2, 3, 5, 8), rng, 0.7) + 0.6 * (1 - 2 * np.abs(wave(LAYER_WIDTH, (3, 5, 11, 19, 37), rng, 0.66))) * (number < 4))
    tall = 0 if number < 3 else 7 + 62 * near ** 2
    canvas = Canvas(LAYER_WIDTH, LAYER_VIEW)
    tone = tuple(int(c) for c in _blue(1.0 - near ** 0.8))
    canvas.polygon([(x, line[x % LAYER_WIDTH]) for x in range(LAYER_WIDTH + 1)] + [(LAYER_WIDTH, LAYER_VIEW), (0, LAYER_VIEW)], tone)
    count = 0 if number < 3 else int(LAYER_WIDTH / (3 + 22 * near ** 2))
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
            canvas.polygon([(x + shift - 1, line[int(x)] + 14), (x + shift + 1, line[int(x)] + 14), (x + shift + bend, line[int(x)] + 4 - tall)], tone)
    for _ in range(60):
        x, tall = rng.random() * LAYER_WIDTH, rng.uniform(10, 24)
        for shift in (-LAYER_WIDTH, 0, LAYER_WIDTH):
            canvas.disc(x + shift, line[int(x)] + 4 - tall, 1.5, 1.3, (226, 238, 206))


# --- frames ------------------------------------------------------------------------------------------------------------

def _planks(canvas, x, y, w, h, rng):
    canvas.polygon([(x, y), (x + w, y), (x + w, y + h), (x, y + h)], (46, 30, 48))
    along = w >= h
    for _ in range(int(w * h / 26)):
        px, py, run = rng.uniform(x, x + w), rng.uniform(y, y + h), rng.uniform(8, 46)
        end = (min(px + run, x + w), py + rng.normal(0, 0.4)) if along else (px + rng.normal(0, 0.4), min(py + run, y + h))
        canvas.stroke([(px, py), end], 0.9, shade(masonry.WOOD, rng.uniform(0.12, 0.5)))


def window(width=640, height=360, hole=(20, 18, 600, 296)):
    """A wooden window frame, overgrown, around a hole for the view; a plain board below for words."""
    rng = generator("window")
    canvas = Canvas(width, height)
    x, y, w, h = hole
    for part in ((0, 0, width, y), (0, y + h, width, height - y - h), (0, y, x, h), (x + w, y, width - x - w, h)):
        _planks(canvas, *part, rng)
    for inset, tone in ((0, 0.95), (1.4, 0.25), (4, 0.72)):
        box = [(x - inset, y - inset), (x + w + inset, y - inset), (x + w + inset, y + h + inset), (x - inset, y + h + inset), (x - inset, y - inset)]
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
            flora.clump(canvas, start + side * along, y - 5 + rng.normal(0, 3), 4 + 7 * thick, flora.LEAVES["oak"], rng.uniform(-0.1, 0.12), rng, 3.2)
            if rng.random() < 0.55:
                masonry.ivy(canvas, start + side * along, y, rng.uniform(6, 14 + 46 * thick), rng)
        for down in np.arange(0, 90, 6.0):
            flora.clump(canvas, start - side * 8 + rng.normal(0, 3), y + down, 7 - down * 0.05, flora.LEAVES["oak"], rng.uniform(-0.12, 0.1), rng, 3.0)
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
        for line, facing in ((((a, b), (c, b)), 0.14), (((c, b), (c, d)), 0.06), (((c, d), (a, d)), -0.16), (((a, d), (a, b)), -0.08)):
            canvas.stroke(line, 1.6, shade(gold, profile + facing))
    for cx, cy in ((9, 9), (width - 9, 9), (9, height - 9), (width - 9, height - 9), (width / 2, 7), (width / 2, height - 7)):
        for k in range(8):
            angle = k * math.pi / 4 + 0.2
            canvas.dab(cx + 5.5 * math.cos(angle), cy + 5.5 * math.sin(angle), 5, 2.4, angle, shade(gold, 0.5 - 0.3 * math.sin(angle) + rng.normal(0, 0.05)))
        canvas.disc(cx, cy, 3, 3, gold[3])
        canvas.disc(cx - 0.6, cy - 0.8, 1.3, 1.2, gold[4])
    colour, alpha = canvas.pixels()
    alpha[rim:height - rim, rim:width - rim] = 0
    return colour, alpha
