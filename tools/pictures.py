#!/usr/bin/python3
"""Pictures of a screen: reading them, and telling where two differ. Needs Pillow.

usage: pictures.py check|renew DRAWN COMMITTED     compares two pictures, or makes the second one, a PNG, from the first
"""
import sys

from PIL import Image, ImageChops


def read(path):
    """The picture in RGB. Alpha is left out: screens are opaque."""
    with Image.open(path) as image:
        return image.convert("RGB")


def difference(old, new):
    """(picture, count): the new picture darkened, with the pixels that differ in full magenta, and how many there are.

    Pictures of different sizes differ wherever only one of them has a pixel."""
    size = tuple(map(max, old.size, new.size))
    both = (0, 0, *map(min, old.size, new.size))
    red, green, blue = ImageChops.difference(old.crop(both), new.crop(both)).split()
    farthest = ImageChops.lighter(red, ImageChops.lighter(green, blue))
    differs = Image.new("L", size, 255)
    differs.paste(farthest.point(lambda distance: 255 if distance else 0))
    picture = Image.new("RGB", size)
    picture.paste(new.point(lambda value: value // 4))
    picture.paste((255, 0, 255), mask=differs)
    return picture, differs.histogram()[255]


def main(do, drawn, committed):
    if do == "renew":
        read(drawn).save(committed)
    elif count := difference(read(committed), read(drawn))[1]:
        sys.exit(f"{committed}: {count} pixels differ from {drawn}; when the new ones are right:\n"
                 f"{sys.argv[0]} renew {drawn} {committed}")


if __name__ == "__main__":
    main(*sys.argv[1:])
