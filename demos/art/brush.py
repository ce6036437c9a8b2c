"""Brushes: noise, colour ramps, and a canvas that is painted at twice its size and scaled down.

Coordinates are pixels of the finished picture; the canvas multiplies them. Colours are (r, g, b) from 0 to 255.
Every random number comes from a generator with a fixed seed, so that each run paints the same picture.
"""

import math
import zlib

import numpy as np
from PIL import Image, ImageDraw

SCALE = 2


def generator(name):
    """A random generator that depends on the name alone."""
    return np.random.default_rng(zlib.crc32(name.encode()))


def smoothstep(low, high, value):
    t = np.clip((value - low) / (high - low), 0.0, 1.0)
    return t * t * (3.0 - 2.0 * t)


def ramp(stops, t):
    """Colours at t (any shape, 0 to 1) along evenly spaced stops, or along (place, colour) pairs."""
    if isinstance(stops[0][1], (tuple, list)):
        places = [place for place, _ in stops]
        colours = np.array([colour for _, colour in stops], float)
    else:
        places = np.linspace(0.0, 1.0, len(stops))
        colours = np.array(stops, float)
    t = np.asarray(t, float)
    return np.stack([np.interp(t, places, colours[:, c]) for c in range(3)], axis=-1)


def shade(stops, t):
    """One colour of a ramp as a tuple of integers."""
    return tuple(int(round(c)) for c in ramp(stops, min(max(t, 0.0), 1.0)))


def mix(a, b, t):
    """Blend of two pictures or colours; t broadcasts over the channels."""
    t = np.asarray(t, float)
    if t.ndim:
        t = t[..., None]
    return np.asarray(a, float) * (1.0 - t) + np.asarray(b, float) * t


def closed(line):
    """The line with its right end bent to where it begins, so that it can be repeated."""
    x, reach = np.arange(len(line)), 240
    return line + (line[0] - line[-1]) * smoothstep(len(line) - reach, len(line), x)


def wave(width, octaves, rng, rough=0.5):
    """A seamless line of noise, -1 to 1: octaves is a list of whole numbers of periods in the width."""
    x = np.arange(width) / width * 2.0 * math.pi
    line, weight, total = np.zeros(width), 1.0, 0.0
    for periods in octaves:
        line += weight * np.sin(x * periods + rng.uniform(0.0, 2.0 * math.pi))
        total += weight
        weight *= rough
    return line / total


def noise(height, width, cell_y, cell_x, rng, octaves=3):
    """A field of value noise, 0 to 1, seamless in both directions when the cells divide the size."""
    field, weight, total = np.zeros((height, width)), 1.0, 0.0
    for _ in range(octaves):
        rows, columns = max(1, round(height / cell_y)), max(1, round(width / cell_x))
        grid = rng.random((rows, columns))
        field += weight * _stretch(_stretch(grid, height, 0), width, 1)
        total += weight
        weight, cell_y, cell_x = weight * 0.5, max(1, cell_y / 2), max(1, cell_x / 2)
    return field / total


def _stretch(grid, size, axis):
    place = np.arange(size) / size * grid.shape[axis]
    first = np.floor(place).astype(int)
    t = smoothstep(0.0, 1.0, place - first)
    t = t[:, None] if axis == 0 else t[None, :]
    low = np.take(grid, first % grid.shape[axis], axis=axis)
    high = np.take(grid, (first + 1) % grid.shape[axis], axis=axis)
    return low * (1.0 - t) + high * t


class Canvas:
    """An RGBA picture painted at SCALE times its size. What reaches over a side of one that `wraps` enters on the other."""

    def __init__(self, width, height, scale=SCALE, wraps=False):
        self.width, self.height, self.scale, self.wraps = width, height, scale, wraps
        self.image = Image.new("RGBA", (width * scale, height * scale), (0, 0, 0, 0))
        self.pen = ImageDraw.Draw(self.image)

    def _placed(self, points, reach=0.0):
        """The points at each place where something of that reach around them shows, in pixels of the image."""
        across = [x for x, _ in points] or [0]
        low, high = min(across) - reach, max(across) + reach
        for shift in (0, self.width, -self.width) if self.wraps else (0,):
            if shift == 0 or (low + shift < self.width and high + shift > 0):
                yield [((x + shift) * self.scale, y * self.scale) for x, y in points]

    def polygon(self, points, colour, alpha=255):
        for placed in self._placed(points):
            self.pen.polygon(placed, fill=(*colour, alpha))

    def stroke(self, points, width, colour, alpha=255):
        for placed in self._placed(points, width):
            self.pen.line(placed, fill=(*colour, alpha), width=max(1, round(width * self.scale)), joint="curve")

    def disc(self, x, y, rx, ry, colour, alpha=255):
        for box in self._placed([(x - rx, y - ry), (x + rx, y + ry)]):
            self.pen.ellipse([*box[0], *box[1]], fill=(*colour, alpha))

    def dab(self, x, y, length, breadth, angle, colour, alpha=255):
        """A leaf-shaped touch of the brush; the angle is in radians."""
        c, s = math.cos(angle), math.sin(angle)
        shape = ((-1, 0), (-0.4, -1), (0.4, -0.9), (1, 0), (0.4, 0.9), (-0.4, 1))
        self.polygon(
            [(x + u * length * c - v * breadth * s, y + u * length * s + v * breadth * c) for u, v in shape],
            colour,
            alpha,
        )

    def limb(self, points, widths, colour):
        """A tapering trunk, branch or leg through the points."""
        for (x1, y1), (x2, y2), w1, w2 in zip(points, points[1:], widths, widths[1:]):
            length = math.hypot(x2 - x1, y2 - y1) or 1.0
            nx, ny = -(y2 - y1) / length / 2.0, (x2 - x1) / length / 2.0
            self.polygon(
                [
                    (x1 + nx * w1, y1 + ny * w1),
                    (x2 + nx * w2, y2 + ny * w2),
                    (x2 - nx * w2, y2 - ny * w2),
                    (x1 - nx * w1, y1 - ny * w1),
                ],
                colour,
            )
            self.disc(x2, y2, w2 / 2.0, w2 / 2.0, colour)

    def pixels(self):
        """The finished picture as (colour, alpha): float arrays of 0 to 255 and of 0 to 1, scaled down."""
        big = np.asarray(self.image, float)
        alpha = big[..., 3:] / 255.0
        blocks = (self.height, self.scale, self.width, self.scale, -1)
        alpha_sum = alpha.reshape(blocks).mean(axis=(1, 3))
        colour_sum = (big[..., :3] * alpha).reshape(blocks).mean(axis=(1, 3))
        return colour_sum / np.maximum(alpha_sum, 1e-6), alpha_sum[..., 0]


def over(colour, alpha, front_colour, front_alpha):
    """Lays one picture over another; returns the new (colour, alpha)."""
    out = front_alpha + alpha * (1.0 - front_alpha)
    weight = np.where(out > 0.0, front_alpha / np.maximum(out, 1e-6), 0.0)
    return mix(colour, front_colour, weight), out
