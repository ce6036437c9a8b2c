#!/usr/bin/python3
"""tools/gallery on a small gallery of its own, with a stand-in for the player that writes known pictures.

usage: gallery_test.py GALLERY
"""
import pathlib
import subprocess
import sys
import tempfile

from PIL import Image

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


def encode(path, height=5, changed=(), level=6):
    picture = Image.new("RGB", (8, height), "green")
    for place in changed:
        picture.putpixel(place, (0, 129, 0))
    picture.save(path, compress_level=level)


def test(root):
    demos, player, page = root / "demos", root / "player", root / "out/index.html"

    def gallery(do, status, *words):
        done = subprocess.run([sys.argv[1], do, "--player", player, "--demos", demos, "--out", root / "out"],
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        assert done.returncode == status and all(word in done.stdout for word in words), f"{do}, {words}: {done.stdout}"
        return done.stdout

    (demos / "guide").mkdir(parents=True)
    player.write_text(PLAYER.replace("STORE", str(root)))
    player.chmod(0o755)
    (demos / "wood.lua").write_text("-- A wood.\n-- picture: frame 6\n")
    (demos / "guide/view.lua").write_text("-- picture: whole, frame 10\n-- picture: late, frame 15\n"
                                          "-- picture: poor, frame 15, 16 bits\n-- picture: seen, frame 10, inspected\n")
    for name in ("wood.8", "wood.16", "wood.32", "view.16", "view.32", "view.32.inspected"):
        encode(root / f"{name}.png")

    # Every script has its pictures, and every picture its script.
    gallery("check", 1, "wood.png: there is no committed picture", "guide/view_poor.png")
    gallery("renew", 0)
    made = {str(path.relative_to(demos)) for path in demos.rglob("*.png")}
    assert made == {"wood.png", "golden/wood.8.png", "golden/wood.16.png",
                    "guide/view_whole.png", "guide/view_late.png", "guide/view_poor.png", "guide/view_seen.png"}, made
    encode(demos / "golden/gone.8.png")
    gallery("check", 1, "golden/gone.8.png: no script makes this picture")
    assert gallery("renew", 0).split() == ["removed", "demos/golden/gone.8.png"]

    # Pixels that differ are counted, shown and renewed, other bytes for the same pixels are not.
    encode(demos / "golden/wood.8.png", level=0)
    encode(root / "wood.32.png", height=4)
    encode(root / "wood.16.png", changed=[(3, 1)])
    encode(root / "view.16.png", changed=[(0, 0), (7, 4), (5, 2)])
    encode(root / "view.32.inspected.png", changed=[(0, 0), (7, 4)])
    said = gallery("check", 1, "golden/wood.16.png: differs in 1 of 40 pixels", "wood.png: differs in 8 of 40",
                   "view_poor.png: differs in 3 of 40", "view_seen.png: differs in 2 of 40")
    assert len(said.splitlines()) == 5, said
    shown = "page/demos_golden_wood.16.{}.png"
    assert all(shown.format(kind) in page.read_text() for kind in ("old", "new", "difference"))
    with Image.open(root / "out" / shown.format("difference")) as marked:
        assert [i for i, pixel in enumerate(marked.getdata()) if pixel == (255, 0, 255)] == [11]
    gallery("renew", 0, "renewed demos/golden/wood.16.png")
    gallery("check", 0)
    assert "<img" not in page.read_text()

    # A script that names no frame, or fails, fails the gallery.
    for text, word in ("-- Nothing.\n", "exactly one line"), ("-- picture: frame 6\nbroken\n", "it broke"):
        (demos / "mute.lua").write_text(text)
        gallery("check", 1, "mute.lua", word)


with tempfile.TemporaryDirectory() as folder:
    test(pathlib.Path(folder))
