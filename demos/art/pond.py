"""A pond from above: one tile, seamless in both directions."""

import math

import numpy as np

from brush import Canvas, generator, mix, noise, ramp, shade, smoothstep

POND = 176


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
    at = lambda s, side: (
        x + size * (s * math.cos(heading) - (side + bend * s * s) * math.sin(heading)),
        y + size * (s * math.sin(heading) + (side + bend * s * s) * math.cos(heading)),
    )
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
                canvas.dab(
                    x + size * reach * 0.6 * math.cos(a),
                    y - 2 + size * reach * 0.5 * math.sin(a),
                    size * reach * 0.6,
                    size * 0.15,
                    a,
                    shade(tones, 0.25 + 0.25 * ring - 0.18 * math.sin(a)),
                )
        canvas.disc(x, y - 2, size * 0.11, size * 0.1, (255, 214, 110))


def pond():
    rng = generator("pond")
    ripple = noise(POND, POND, 22, 22, rng, 2)
    net = np.maximum(
        1.0 - 3.2 * np.abs(noise(POND, POND, 16, 16, rng, 2) - 0.5),
        1.0 - 3.2 * np.abs(noise(POND, POND, 22, 22, rng, 2) - 0.5),
    )
    picture = ramp([(18, 52, 92), (26, 84, 116), (44, 124, 140)], ripple)
    picture = mix(picture, (134, 210, 204), 0.30 * smoothstep(0.80, 1.0, net))
    under, top = Canvas(POND, POND), Canvas(POND, POND)
    for x, y, heading, size in ((42, 118, -0.6, 17), (128, 52, 2.4, 15), (96, 160, 0.3, 13)):
        seed = int(rng.integers(1 << 30))
        _tiled(
            lambda ox, oy: under.limb(
                [
                    (x + ox + 5 - 14 * math.cos(heading), y + oy + 7 - 14 * math.sin(heading)),
                    (x + ox + 5 + 12 * math.cos(heading), y + oy + 7 + 12 * math.sin(heading)),
                ],
                [3, 8],
                (18, 54, 88),
            )
        )
        _tiled(lambda ox, oy: _koi(under, x + ox, y + oy, heading, size, np.random.default_rng(seed)))
    for x, y, size, cut, blossom in (
        (40, 40, 22, 0.8, True),
        (72, 58, 13, 2.9, False),
        (140, 118, 20, 4.1, False),
        (166, 140, 12, 1.2, False),
        (112, 98, 11, 5.4, True),
        (16, 160, 15, 0.2, False),
    ):
        _tiled(lambda ox, oy: _lily_pad(top, x + ox, y + oy, size, cut, blossom, rng))
    for x, y, a in rng.uniform(0, 1, (9, 3)):
        _tiled(lambda ox, oy: top.dab(x * POND + ox, y * POND + oy, 3.0, 1.5, a * 6, (250, 196, 212)))
    colour, alpha = under.pixels()
    picture = mix(picture, mix(colour, (40, 116, 136), 0.16), alpha)
    colour, alpha = top.pixels()
    return mix(picture, colour, alpha), np.ones((POND, POND))
