"""Opaque pictures of the dusk world: the world of a one-plane walk, and one meadow at three times of the year."""

import numpy as np

from brush import generator, mix, noise, ramp, smoothstep

# left, top, width, height in the front plane
WALK = (470, 140, 1440, 400)
MEADOW = (560, 230, 760, 300)

WINTER = [
    (0.0, (26, 30, 66)),
    (0.25, (66, 76, 126)),
    (0.5, (136, 150, 196)),
    (0.75, (214, 210, 232)),
    (1.0, (255, 250, 244)),
]


def luminance(colour):
    return colour @ np.array([0.30, 0.55, 0.15]) / 255.0


def cut(front, back, box, back_x, back_y):
    """The two planes at one place: (front colour, front alpha, back colour)."""
    left, top, width, height = box
    place = slice(top, top + height), slice(left, left + width)
    columns = (np.arange(width) + back_x) % back.shape[1]
    rows = np.clip(np.arange(height) + back_y, 0, back.shape[0] - 1)
    return front[0][place], front[1][place], back[rows][:, columns]


def walk(front, back):
    colour, alpha, sky = cut(front, back, WALK, 280, 40)
    return mix(sky, colour, alpha)


def dusk(front, back):
    colour, alpha, sky = cut(front, back, MEADOW, 560, 110)
    return mix(sky, colour, alpha)


def night(front, back):
    """Blue light and stars; what was warm and bright (lanterns, crystals) goes on shining."""
    rng = generator("night")
    colour, alpha, sky = cut(front, back, MEADOW, 560, 110)
    y = np.mgrid[0 : sky.shape[0], 0 : sky.shape[1]][0]
    dark_sky = mix(
        ramp([(14, 16, 48), (34, 46, 96), (74, 92, 142)], luminance(sky) * 1.05),
        ramp([(12, 14, 44), (52, 72, 124)], y / 200.0),
        0.4,
    )
    for _ in range(170):
        at = int(rng.integers(0, 120)), int(rng.integers(0, sky.shape[1]))
        dark_sky[at] = mix(dark_sky[at], (232, 236, 255), rng.uniform(0.2, 0.95))
    warmth = smoothstep(0.12, 0.5, (colour[..., 0] - colour[..., 2]) / 255.0) * smoothstep(0.52, 0.8, luminance(colour))
    land = mix(colour * [0.40, 0.47, 0.78] + [10, 14, 30], colour * 1.1, 0.95 * warmth)
    return mix(dark_sky, land, alpha)


def winter(front, back):
    """Snow lies where something solid begins under open air; leaves are frosted."""
    rng = generator("winter")
    colour, alpha, sky = cut(front, back, MEADOW, 560, 110)
    pale_sky = mix(ramp([(96, 112, 172), (168, 172, 212), (250, 226, 224)], luminance(sky) * 1.15), sky, 0.18)
    land = mix(ramp(WINTER, luminance(colour) * 1.25), colour, 0.28)
    depth = noise(*alpha.shape, 10, 20, rng, 2)
    snow = np.zeros(alpha.shape)
    for reach in range(1, 9):
        edge = smoothstep(0.25, 0.6, alpha - np.roll(alpha, reach, axis=0))
        snow = np.maximum(snow, edge * (depth > reach / 13.0 + 0.12))
    snow[:2] = 0
    brightness = luminance(colour)
    patches = smoothstep(0.06, 0.22, brightness - np.roll(brightness, 3, axis=0)) * (depth > 0.42) * 0.75
    white = ramp([(178, 192, 232), (255, 252, 248)], 0.35 + 0.75 * brightness)
    land = mix(land, white, np.maximum(snow, patches))
    warmth = smoothstep(0.30, 0.62, (colour[..., 0] - colour[..., 2]) / 255.0) * smoothstep(0.66, 0.9, brightness)
    picture = mix(pale_sky, mix(land, colour, warmth), alpha)
    for _ in range(340):
        y, x = int(rng.integers(1, alpha.shape[0] - 1)), int(rng.integers(1, alpha.shape[1] - 1))
        picture[y, x] = mix(picture[y, x], (255, 255, 255), 0.85)
        if rng.random() < 0.35:
            picture[y + 1, x] = mix(picture[y + 1, x], (255, 255, 255), 0.6)
    return picture
