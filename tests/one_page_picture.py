#!/usr/bin/env python3
"""Compares what the host of one page wrote with the picture that its guide shows.

usage: one_page_picture.py PICTURE.ppm PICTURE.png [renew]     renew: writes the PNG anew
"""
import pathlib
import sys

sys.path.append(str(pathlib.Path(__file__).resolve().parent.parent / "tools"))
import gallery_png  # noqa: E402


def read_ppm(path):
    kind, size, most, pixels = path.read_bytes().split(b"\n", 3)
    width, height = map(int, size.split())
    if (kind, most, len(pixels)) != (b"P6", b"255", 3 * width * height):
        raise ValueError(f"{path}: not a picture of the host of one page")
    return gallery_png.Picture(width, height, pixels)


ppm, png = map(pathlib.Path, sys.argv[1:3])
drawn = read_ppm(ppm)
if sys.argv[3:] == ["renew"]:
    gallery_png.write(png, drawn)
elif drawn != gallery_png.read(png):
    _, count = gallery_png.difference(gallery_png.read(png), drawn)
    sys.exit(f"{png}: {count} pixels differ from {ppm}; when the new ones are right:\n{sys.argv[0]} {ppm} {png} renew")
