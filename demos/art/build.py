"""Paints every picture of the demos: `python3 build.py` (needs numpy and Pillow; takes about a minute).

NAME.png is in true colour, with alpha where the picture has any; NAME.8.png is the same in the common palette. That is
the palette of the pictures that are there, so that a change of one leaves the others as they are; `python3 build.py
palette` chooses its colours anew.
"""

import os
import sys

import numpy as np
from PIL import Image

import air
import blue_layers
import dusk_back
import dusk_front
import dusk_land
import frames
import meadow
import palette
import pond
import sprites

HERE = os.path.dirname(os.path.abspath(__file__))
# samples that a picture gives to the common palette; the small and the lively count for more than their size
SHARES = {
    "dusk_front": 30000,
    "dusk_back": 16000,
    "hero": 4000,
    "meadow_night": 7000,
    "meadow_winter": 7000,
    "pond": 5000,
    "window": 2500,
    "sea": 5000,
}
SOFT_DITHER = {"dusk_back", "sea", "depth0", "fog"}
FLAT = set(sprites.SHEETS) | {"lantern", "fern", "reeds", "firefly", "spark"}


def opaque(colour):
    return colour, np.ones(colour.shape[:2])


def paint_all():
    front, back = dusk_front.paint(), dusk_back.paint()
    pictures = {"dusk_front": front, "dusk_back": back}
    pictures["dusk_walk"] = opaque(meadow.walk(front, back[0]))
    pictures["meadow_dusk"] = opaque(meadow.dusk(front, back[0]))
    pictures["meadow_night"] = opaque(meadow.night(front, back[0]))
    pictures["meadow_winter"] = opaque(meadow.winter(front, back[0]))
    pictures.update(sprites.paint_all())
    pictures.update(
        pond=pond.pond(), fog=air.fog(), sea=air.sea(), window=frames.window(), gilded=frames.gilded_frame()
    )
    for number in range(10):
        pictures[f"depth{number}"] = blue_layers.layer(number)
    return pictures


def true_colour(colour, alpha):
    """8-bit pixels. An opaque pixel is never all zero, also not with 5 or 6 bits a channel: zero means transparent."""
    rgb = np.clip(np.round(colour), 8, 255).astype(np.uint8)
    if alpha.min() >= 1.0:
        return Image.fromarray(rgb, "RGB")
    level = np.round(np.clip(alpha, 0, 1) * 255).astype(np.uint8)
    rgb[level == 0] = 0
    return Image.fromarray(np.dstack([rgb, level]), "RGBA")


def main():
    pictures = paint_all()
    kept = os.path.join(HERE, "hero.8.png")
    anew = sys.argv[1:] == ["palette"] or not os.path.exists(kept)
    colours = palette.build(pictures, SHARES) if anew else palette.of(kept)
    table = palette.lookup(colours)
    for name, (colour, alpha) in pictures.items():
        true_colour(colour, alpha).save(os.path.join(HERE, name + ".png"), optimize=True)
        strength = 5.0 if name in FLAT else 13.0 if name in SOFT_DITHER else 9.0
        indices = palette.dithered(colour, alpha, table, strength, veil=name == "fog")
        palette.image(indices, colours).save(os.path.join(HERE, name + ".8.png"), optimize=True, transparency=0)
    with open(os.path.join(HERE, "dusk_ground.lua"), "w", encoding="utf-8") as out:
        out.write(dusk_land.lua_table())


if __name__ == "__main__":
    main()
