#!/usr/bin/python3
"""Compares what the host of one page wrote with the picture that its guide shows.

usage: one_page_picture.py PICTURE.ppm PICTURE.png [renew]     renew: writes the PNG anew
"""
import pathlib
import sys

sys.path.append(str(pathlib.Path(__file__).resolve().parents[2] / "tools"))
import pictures  # noqa: E402

ppm, png = sys.argv[1:3]
drawn = pictures.read(ppm)
if sys.argv[3:] == ["renew"]:
    drawn.save(png)
elif count := pictures.difference(pictures.read(png), drawn)[1]:
    sys.exit(f"{png}: {count} pixels differ from {ppm}; when the new ones are right:\n{sys.argv[0]} {ppm} {png} renew")
