"""One palette for every picture of the demos, and pictures dithered to it.

Index 0 is transparent and never a colour.
"""

import numpy as np
from PIL import Image

from brush import generator

COLOURS = 255
_LUT_BITS = 6
_BAYER = (
    np.array(
        [
            [0, 32, 8, 40, 2, 34, 10, 42],
            [48, 16, 56, 24, 50, 18, 58, 26],
            [12, 44, 4, 36, 14, 46, 6, 38],
            [60, 28, 52, 20, 62, 30, 54, 22],
            [3, 35, 11, 43, 1, 33, 9, 41],
            [51, 19, 59, 27, 49, 17, 57, 25],
            [15, 47, 7, 39, 13, 45, 5, 37],
            [63, 31, 55, 23, 61, 29, 53, 21],
        ]
    )
    / 64.0
    - 0.5
)


def _perceived(rgb):
    """Colours in a space where equal distances look about equally far apart (Oklab)."""
    linear = (np.asarray(rgb, float) / 255.0) ** 2.2
    cones = np.cbrt(linear @ np.array([[0.4122, 0.2119, 0.0883], [0.5363, 0.6807, 0.2817], [0.0514, 0.1074, 0.6300]]))
    return (
        cones
        @ np.array([[0.2105, 1.9780, 0.0259], [0.7936, -2.4286, 0.7828], [-0.0041, 0.4506, -0.8087]])
        * [1.0, 1.35, 1.35]
    )


def _nearest(points, centres):
    best = np.empty(len(points), int)
    weights = (centres**2).sum(axis=1)
    for start in range(0, len(points), 16384):
        part = points[start : start + 16384]
        best[start : start + 16384] = np.argmin(weights - 2.0 * part @ centres.T, axis=1)
    return best


def build(pictures, shares):
    """k-means over samples of all pictures; `shares` says how many samples a picture gives."""
    rng = generator("palette")
    samples = []
    for name, (colour, alpha) in pictures.items():
        solid = np.clip(colour[alpha >= 0.5], 0, 255)
        count = shares.get(name, 1500)
        samples.append(solid[rng.integers(0, len(solid), count)])
    rgb = np.concatenate(samples)
    points = _perceived(rgb)
    centres = points[rng.choice(len(points), COLOURS, replace=False)]
    for _ in range(24):
        owner = _nearest(points, centres)
        count = np.bincount(owner, minlength=COLOURS)
        for axis in range(3):
            total = np.bincount(owner, points[:, axis], COLOURS)
            centres[:, axis] = np.where(count, total / np.maximum(count, 1), centres[:, axis])
        empty = np.flatnonzero(count == 0)
        if len(empty):
            far = np.argsort(-((points - centres[owner]) ** 2).sum(axis=1))[: len(empty)]
            centres[empty] = points[far]
    owner = _nearest(points, centres)
    table = np.stack(
        [
            np.bincount(owner, rgb[:, c], COLOURS) / np.maximum(np.bincount(owner, minlength=COLOURS), 1)
            for c in range(3)
        ],
        axis=1,
    )
    table = table[np.argsort(_perceived(table)[:, 0])]
    return np.vstack([[0, 0, 0], np.clip(np.round(table), 8, 255)]).astype(np.uint8)


def of(path):
    """The palette of a picture that was written with one."""
    return np.array(Image.open(path).getpalette(), np.uint8).reshape(-1, 3)


def lookup(palette):
    """Index of the nearest colour for every colour of 6 bits a channel."""
    levels = (np.arange(1 << _LUT_BITS) + 0.5) * 256 / (1 << _LUT_BITS)
    grid = np.stack(np.meshgrid(levels, levels, levels, indexing="ij"), axis=-1).reshape(-1, 3)
    return (_nearest(_perceived(grid), _perceived(palette[1:])) + 1).astype(np.uint8)


def dithered(colour, alpha, table, strength=13.0, veil=False):
    """The picture as palette indices; opacity below one half becomes index 0. A veil's opacity is dithered too."""
    height, width = alpha.shape
    threshold = np.tile(_BAYER, (height // 8 + 1, width // 8 + 1))[:height, :width, None]
    fine = np.clip(colour + strength * threshold, 0, 255).astype(int) >> (8 - _LUT_BITS)
    index = table[(fine[..., 0] << (2 * _LUT_BITS)) | (fine[..., 1] << _LUT_BITS) | fine[..., 2]]
    cut = 0.5 - 0.98 * threshold[..., 0] if veil else 0.5
    return np.where(alpha >= cut, index, 0).astype(np.uint8)


def image(indices, palette):
    picture = Image.fromarray(indices, "P")
    picture.putpalette(palette.tobytes())
    return picture
