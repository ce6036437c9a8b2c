#!/usr/bin/python3
"""tools/gallery on a small gallery of its own, with a stand-in for the player that writes known pictures.

usage: gallery_test.py GALLERY
"""
import pathlib
import random
import subprocess
import sys
import tempfile
import unittest

from PIL import Image

GALLERY = pathlib.Path(sys.argv.pop(1)).resolve()

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


def encode(path, width, height, pixels, level=6):
    Image.frombytes("RGB", (width, height), pixels).save(path, compress_level=level)


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
            encode(self.store / f"{name}.png", 8, 5, self.pixels)

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
        encode(self.store / "wood.16.png", 8, 5, bytes(changed))
        self.run_gallery("check", 1, "golden/wood.16.png: differs in 1 of 40 pixels")
        page = (self.root / "out/index.html").read_text()
        kinds = {kind: f"page/demos_golden_wood.16.{kind}.png" for kind in ("old", "new", "difference")}
        for kind, name in kinds.items():
            self.assertIn(name, page, kind)
        shown = Image.open(self.root / "out" / kinds["difference"]).tobytes()
        self.assertEqual([i for i in range(40) if shown[3 * i:3 * i + 3] == b"\xff\x00\xff"], [11])
        self.run_gallery("renew", 0, "renewed demos/golden/wood.16.png")
        self.run_gallery("check", 0)
        self.assertNotIn("<img", (self.root / "out/index.html").read_text())

    def test_a_picture_of_another_size_differs(self):
        self.run_gallery("renew", 0)
        encode(self.store / "wood.32.png", 8, 4, self.pixels[:96])
        self.run_gallery("check", 1, "wood.png: differs in 8 of 40 pixels")

    def test_another_encoding_of_the_same_pixels_is_no_difference(self):
        self.run_gallery("renew", 0)
        encode(self.demos / "wood.png", 8, 5, self.pixels, level=0)
        self.assertNotEqual((self.demos / "wood.png").read_bytes(), (self.store / "wood.32.png").read_bytes())
        self.run_gallery("check", 0)

    def test_every_script_has_its_pictures_and_every_picture_its_script(self):
        self.run_gallery("check", 1, "wood.png: there is no committed picture", "guide/view_poor.png")
        self.run_gallery("renew", 0)
        encode(self.demos / "golden/gone.8.png", 8, 5, self.pixels)
        self.run_gallery("check", 1, "golden/gone.8.png: no script makes this picture")
        self.run_gallery("renew", 0, "removed")
        self.script("mute.lua", "-- A script that names no frame.\n")
        self.run_gallery("check", 1, "mute.lua", "exactly one line")

    def test_a_script_that_fails_fails_the_gallery(self):
        self.run_gallery("renew", 0)
        self.script("wood.lua", "-- picture: frame 6\nbroken\n")
        self.run_gallery("check", 1, "wood.lua", "it broke")


unittest.main()
