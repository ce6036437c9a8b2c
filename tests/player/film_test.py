#!/usr/bin/python3
"""An animated PNG and a contact sheet beside the shots of the same run.

usage: film_test.py PLAYER
"""
import pathlib
import subprocess
import sys
import tempfile

from PIL import Image

GAME = """
local modes = {[20] = {10, 7}, [25] = {74, 46}, [30] = {37, 23}}
while true do
    local w, h = screen_size()
    for i = 1, frame_number() % 4 == 0 and 0 or math.random(0, 40) do  -- nothing now and then
        new_map(1, 10 + i, 1, 1, rgb(math.random(0, 255), math.random(0, 255), math.random(0, 255)))
        process{file = 1, graph = 10 + i, x = math.random(0, w - 1), y = math.random(0, h - 1)}
    end
    local mode = modes[frame_number()]
    if mode then set_mode(mode[1], mode[2], 32) end
    frame()
end
"""
FIRST_SIZE = (37, 23)


def filmed(shot):
    """A screen as a film of the first one's size shows it: enlarged or shrunk as a whole, in the middle."""
    if shot.size == (10, 7):
        picture = Image.new("RGB", FIRST_SIZE)
        picture.paste(shot.resize((30, 21), Image.NEAREST), (3, 1))
        return picture
    if shot.size == (74, 46):  # the first pixel of each square of four
        return shot.transform(FIRST_SIZE, Image.AFFINE, (2, 0, -0.5, 0, 2, -0.5), Image.NEAREST)
    return shot


def expect(what, value, expected):
    if value != expected:
        sys.exit(f"FAILED: {what}: {value} instead of {expected}")


def main(player):
    with tempfile.TemporaryDirectory() as scratch:
        folder = pathlib.Path(scratch)
        (folder / "game.lua").write_text(GAME)
        subprocess.run([player, "--size", "37x23", "--frames", "40", "--every", "1", "--shots", folder / "shots",
                        "--sheet", folder / "sheet.png", "--record", folder / "film.png", folder / "game.lua"],
                       check=True, stdout=subprocess.DEVNULL)
        shots = [Image.open(path).convert("RGB") for path in sorted((folder / "shots").iterdir())]
        film = Image.open(folder / "film.png")
        expect("frames of the film", film.n_frames, len(shots))
        expect("its colours are sRGB", film.info.get("srgb"), 0)
        for number, shot in enumerate(shots):
            film.seek(number)
            expect(f"frame {number + 1} stays", round(film.info["duration"], 3), round(1000 / 60, 3))
            expect(f"frame {number + 1} is as it was", film.convert("RGB").tobytes() == filmed(shot).tobytes(), True)
        # Seven columns for forty shots, in reading order, six pixels around cells that the largest shot fits.
        sheet = Image.open(folder / "sheet.png").convert("RGB")
        expect("size of the sheet", sheet.size, (6 + 7 * (74 + 6), 6 + 6 * (46 + 6)))
        for number, shot in enumerate(shots):
            left, top = 6 + number % 7 * (74 + 6), 6 + number // 7 * (46 + 6)
            cell = sheet.crop((left, top, left + shot.width, top + shot.height))
            expect(f"shot {number + 1} is on the sheet", cell.tobytes() == shot.tobytes(), True)


main(*sys.argv[1:])
