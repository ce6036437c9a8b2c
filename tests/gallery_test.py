#!/usr/bin/env python3
"""tools/gallery on a small gallery of its own, with a stand-in for the player that writes known pictures.

usage: gallery_test.py GALLERY
"""
import pathlib
import random
import struct
import subprocess
import sys
import tempfile
import unittest
import zlib

GALLERY = pathlib.Path(sys.argv.pop(1)).resolve()
sys.dont_write_bytecode = True
sys.path.insert(0, str(GALLERY.parent))
import gallery_png  # noqa: E402

# Plays a "script" by copying the picture that lies in STORE for its name and depth, for every frame asked for.
PLAYER = """#!/usr/bin/env bash
while (($# > 1)); do
    if [[ $1 == --inspect ]]; then look=.inspected; shift; else declare "${1#--}=$2"; shift 2; fi
done
grep -q broken "$1" && { echo "it broke" >&2; exit 1; }
mkdir -p "$shots"
for ((frame = every; frame <= frames; frame += every)); do
    cp STORE/$(basename "$1" .lua).$bpp$look.png "$shots/$(printf frame_%05d.png $frame)"
done
"""


def filtered(row, above, step, kind):
    """One row under a filter of the PNG format, by the format's definition."""
    out = bytearray([kind])
    for i, value in enumerate(row):
        left = row[i - step] if i >= step else 0
        corner = above[i - step] if i >= step else 0
        up = above[i]
        guess = left + up - corner
        paeth = min((left, up, corner), key=lambda c: abs(guess - c))
        out.append((value - (0, left, up, (left + up) // 2, paeth)[kind]) % 256)
    return bytes(out)


def encode(path, width, height, colour, raw, palette=None, level=6):
    """A PNG whose rows take filters at random."""
    step = gallery_png.CHANNELS[colour]
    stride = width * step
    rows = [raw[y * stride:(y + 1) * stride] for y in range(height)]
    packed = b"".join(filtered(row, above, step, random.randrange(5))
                      for above, row in zip([bytes(stride)] + rows, rows))
    parts = [(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, colour, 0, 0, 0))]
    parts += [(b"PLTE", palette)] if palette else []
    parts += [(b"IDAT", zlib.compress(packed, level)), (b"IEND", b"")]
    path.write_bytes(gallery_png.SIGNATURE + b"".join(
        struct.pack(">I", len(body)) + kind + body + struct.pack(">I", zlib.crc32(kind + body))
        for kind, body in parts))


class Decoder(unittest.TestCase):
    def test_any_filter_and_colour_type(self):
        random.seed(1)
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        path = pathlib.Path(folder.name) / "random.png"
        for _ in range(200):
            width, height = random.randint(1, 9), random.randint(1, 9)
            few = random.sample(range(256), random.randint(2, 200))  # few values: the filters meet ties
            rgb = bytes(random.choices(few, k=3 * width * height))
            encode(path, width, height, 2, rgb)
            self.assertEqual(gallery_png.read(path).pixels, rgb)
            rgba = b"".join(rgb[i:i + 3] + random.randbytes(1) for i in range(0, len(rgb), 3))
            encode(path, width, height, 6, rgba)
            self.assertEqual(gallery_png.read(path).pixels, rgb)
            indices, palette = rgb[:width * height], random.randbytes(768)
            encode(path, width, height, 3, indices, palette)
            self.assertEqual(gallery_png.read(path).pixels,
                             b"".join(palette[3 * i:3 * i + 3] for i in indices))


class Gallery(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name)
        self.demos, self.store = self.root / "demos", self.root / "store"
        for folder in (self.demos, self.demos / "guide", self.store):
            folder.mkdir()
        self.player = self.root / "player"
        self.player.write_text(PLAYER.replace("STORE", str(self.store)))
        self.player.chmod(0o755)
        self.script("wood.lua", "-- A wood.\n-- picture: frame 6\n")
        self.script("guide/view.lua", "-- picture: whole, frame 10\n-- picture: poor, frame 15, 16 bits\n"
                    "-- picture: seen, frame 10, inspected\n")
        random.seed(2)
        self.pixels = random.randbytes(3 * 8 * 5)
        for name in ("wood.8", "wood.16", "wood.32", "view.16", "view.32", "view.32.inspected"):
            encode(self.store / f"{name}.png", 8, 5, 2, self.pixels)

    def script(self, name, text):
        (self.demos / name).write_text(text)

    def run_gallery(self, do, expected_status, *expected_words):
        done = subprocess.run([GALLERY, do, "--player", self.player, "--demos", self.demos, "--out", self.root / "out"],
                              capture_output=True, text=True)
        said = done.stdout + done.stderr
        self.assertEqual(done.returncode, expected_status, said)
        for word in expected_words:
            self.assertIn(word, said)
        return said

    def test_renewed_pictures_stand_under_their_names(self):
        self.run_gallery("renew", 0)
        made = {str(path.relative_to(self.demos)) for path in self.demos.rglob("*.png")}
        self.assertEqual(made, {"wood.png", "golden/wood.8.png", "golden/wood.16.png",
                                "guide/view_whole.png", "guide/view_poor.png", "guide/view_seen.png"})
        self.run_gallery("check", 0)
        self.assertEqual(self.run_gallery("renew", 0), "")

    def test_one_changed_pixel_is_found_and_shown(self):
        self.run_gallery("renew", 0)
        changed = bytearray(self.pixels)
        changed[3 * 11 + 2] ^= 1
        encode(self.store / "wood.16.png", 8, 5, 2, bytes(changed))
        self.run_gallery("check", 1, "golden/wood.16.png: differs in 1 of 40 pixels")
        page = (self.root / "out/index.html").read_text()
        kinds = {kind: f"page/demos_golden_wood.16.{kind}.png" for kind in ("old", "new", "difference")}
        for kind, name in kinds.items():
            self.assertIn(name, page, kind)
        shown = gallery_png.read(self.root / "out" / kinds["difference"]).pixels
        self.assertEqual([i for i in range(40) if shown[3 * i:3 * i + 3] == b"\xff\x00\xff"], [11])
        self.run_gallery("renew", 0, "renewed demos/golden/wood.16.png")
        self.run_gallery("check", 0)
        self.assertNotIn("<img", (self.root / "out/index.html").read_text())

    def test_a_picture_of_another_size_differs(self):
        self.run_gallery("renew", 0)
        encode(self.store / "wood.32.png", 8, 4, 2, self.pixels[:96])
        self.run_gallery("check", 1, "wood.png: differs in 8 of 40 pixels")

    def test_another_encoding_of_the_same_pixels_is_no_difference(self):
        self.run_gallery("renew", 0)
        encode(self.demos / "wood.png", 8, 5, 2, self.pixels, level=0)
        self.assertNotEqual((self.demos / "wood.png").read_bytes(), (self.store / "wood.32.png").read_bytes())
        self.run_gallery("check", 0)

    def test_every_script_has_its_pictures_and_every_picture_its_script(self):
        self.run_gallery("check", 1, "wood.png: there is no committed picture", "guide/view_poor.png")
        self.run_gallery("renew", 0)
        encode(self.demos / "golden/gone.8.png", 8, 5, 2, self.pixels)
        self.run_gallery("check", 1, "golden/gone.8.png: no script makes this picture")
        self.run_gallery("renew", 0, "removed")
        self.script("mute.lua", "-- A script that names no frame.\n")
        self.run_gallery("check", 1, "mute.lua", "exactly one line")

    def test_a_script_that_fails_fails_the_gallery(self):
        self.run_gallery("renew", 0)
        self.script("wood.lua", "-- picture: frame 6\nbroken\n")
        self.run_gallery("check", 1, "wood.lua", "it broke")


unittest.main()
