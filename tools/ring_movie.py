#!/usr/bin/env python3
"""Draws docs/ring.gif and the pictures of docs/the-ring.md from what the ring_movie program says of the memory.

usage: ring_movie.py PROGRAM [DOCS]      PROGRAM is build/.../ring_movie, DOCS defaults to docs/ beside tools/

Every cell is drawn from the map pixel that it really holds; every view row from where the module's reader finds
it. The program ends with an error when a view is not the map's, and then nothing is drawn.
"""

import json
import math
import os
import subprocess
import sys

try:
    from PIL import Image, ImageDraw, ImageFont
except ImportError:
    sys.exit("ring_movie.py needs Pillow: apt-get install python3-pil, or pip install pillow")

FONTS = "/usr/share/fonts/truetype/dejavu"
BACKGROUND, PANEL, INK, FAINT = (22, 25, 33), (34, 38, 49), (236, 238, 243), (146, 153, 168)
BEFORE, AFTER, STRADDLE, POINTER, FRESH = (
    (255, 180, 84), (102, 190, 255), (255, 105, 180), (255, 77, 77), (255, 255, 255))
SIZE = (940, 520)
MAP_AT, MAP_CELL = (24, 82), 6
VIEW_AT, VIEW_CELL = (24, 308), 16
MEMORY_AT, CELL, EXTRA_GAP = (490, 82), 17, 14
STEP_MS, HOLD_MS = 240, 2000


def font(size, bold=False):
    path = os.path.join(FONTS, "DejaVuSans-Bold.ttf" if bold else "DejaVuSans.ttf")
    try:
        return ImageFont.truetype(path, size)
    except OSError:
        sys.exit(f"ring_movie.py needs the font {path}: apt-get install fonts-dejavu-core")


def blend(a, b, t):
    return tuple(round(p + (q - p) * t) for p, q in zip(a, b))


def landscape(width, height):
    """The map: hills at dusk under a moon, the same at its left and right edge."""
    turn = 2 * math.pi / width
    far = [height * 0.58 + 2.2 * math.sin(3 * turn * x) + 1.4 * math.sin(5 * turn * x + 1) for x in range(width)]
    near = [height * 0.74 + 1.8 * math.sin(2 * turn * x + 2) + 0.9 * math.sin(7 * turn * x) for x in range(width)]
    picture = {}
    for y in range(height):
        for x in range(width):
            colour = blend((52, 60, 122), (244, 158, 126), min(1, y / (height * 0.62)))
            if (x * 37 + y * 101) % 97 == 0 and y < height * 0.4:
                colour = (240, 236, 214)
            if (x - 30) ** 2 + (y - 10) ** 2 < 13:
                colour = (255, 244, 204)
            if y >= far[x]:
                colour = blend((116, 84, 138), (86, 62, 116), (y - far[x]) / 8)
            if y >= near[x]:
                colour = blend((62, 128, 96), (28, 70, 66), min(1, (y - near[x]) / 8))
            picture[x, y] = colour
    for tree in (6, 15, 19, 38, 47, 52, 60):
        ground = round(near[tree])
        for up in range(1, 7):
            reach = (6 - up) // 2 if up > 1 else 0
            for x in range(tree - reach, tree + reach + 1):
                picture[x % width, ground - up] = (86, 58, 50) if up == 1 else (32, 92, 78)
    for x in range(23, 29):  # a house with a lit window
        for y in range(round(near[26]) - 4, round(near[26]) + 1):
            picture[x, y] = (255, 220, 110) if (x, y) == (26, round(near[26]) - 2) else (148, 78, 70)
    for i in range(4):
        for x in range(22 + i, 30 - i):
            picture[x, round(near[26]) - 5 - i] = (92, 44, 56)
    return picture


class Film:
    def __init__(self, shape):
        self.map_width, self.map_height = shape["map_width"], shape["map_height"]
        self.width, self.height = shape["width"], shape["height"]
        self.ring = self.width * self.height
        self.picture = landscape(self.map_width, self.map_height)
        self.title, self.label, self.small = font(18, True), font(14, True), font(13)

    def colour(self, origin):
        return self.picture[origin % self.map_width, origin // self.map_width]

    def cell_box(self, cell):
        """Where a cell of the memory is drawn; the extra row stands a little apart."""
        row, column = divmod(cell, self.width)
        x = MEMORY_AT[0] + column * CELL
        y = MEMORY_AT[1] + row * CELL + (EXTRA_GAP if row == self.height else 0)
        return x, y, x + CELL, y + CELL

    def owners(self, state):
        """For each cell of the memory the view row that reads it."""
        return {begin + column: row for row, begin in enumerate(state["row_begins"]) for column in range(self.width)}

    def straddling_row(self, state):
        rows = [row for row, begin in enumerate(state["row_begins"]) if begin < self.ring < begin + self.width]
        return rows[0] if rows else None

    def row_colour(self, state, row):
        if row == self.straddling_row(state):
            return STRADDLE
        return BEFORE if row < state["rows_to_wrap"] else AFTER

    def outline(self, draw, boxes, colour_of):
        """Draws the borders between cells of different rows' groups: boxes maps a key to (box, neighbours)."""
        for key, (box, neighbours) in boxes.items():
            colour = colour_of(key)
            if colour is None:
                continue
            x0, y0, x1, y1 = box
            sides = ((x0, y0, x0, y1), (x1 - 1, y0, x1 - 1, y1), (x0, y0, x1, y0), (x0, y1 - 1, x1, y1 - 1))
            for neighbour, side in zip(neighbours, sides):
                if neighbour is None or colour_of(neighbour) != colour:
                    draw.line(side, fill=colour, width=3)

    def draw_map(self, draw, state):
        x0, y0 = MAP_AT
        for (x, y), colour in self.picture.items():
            left, top = x0 + x * MAP_CELL, y0 + y * MAP_CELL
            draw.rectangle((left, top, left + MAP_CELL - 1, top + MAP_CELL - 1), fill=colour)
        for shift in (-self.map_width, 0, self.map_width):
            left = state["x"] % self.map_width + shift
            right = min(left + self.width, self.map_width)
            if right <= 0 or left >= self.map_width:
                continue
            top = y0 + state["y"] * MAP_CELL
            box = (x0 + max(left, 0) * MAP_CELL, top, x0 + right * MAP_CELL - 1,
                   top + self.height * MAP_CELL - 1)
            draw.rectangle(box, outline=FRESH, width=2)

    def draw_view(self, draw, state):
        x0, y0 = VIEW_AT
        boxes = {}
        for row, begin in enumerate(state["row_begins"]):
            for column in range(self.width):
                box = (x0 + column * VIEW_CELL, y0 + row * VIEW_CELL)
                box += (box[0] + VIEW_CELL, box[1] + VIEW_CELL)
                draw.rectangle(box, fill=self.colour(state["memory"][begin + column]))
                around = ((column - 1, row), (column + 1, row), (column, row - 1), (column, row + 1))
                boxes[column, row] = box, [
                    n if 0 <= n[0] < self.width and 0 <= n[1] < self.height else None for n in around]
        self.outline(draw, boxes, lambda key: self.row_colour(state, key[1]))

    def draw_memory(self, draw, state, before):
        owners = self.owners(state)
        fresh = {c for c, value in enumerate(state["memory"]) if before and value != before["memory"][c]}
        boxes = {}
        for cell, origin in enumerate(state["memory"]):
            box = self.cell_box(cell)
            read = cell in owners
            colour = PANEL if origin < 0 else self.colour(origin)
            draw.rectangle(box, fill=colour if read else blend(colour, BACKGROUND, 0.62))
            if not read:
                draw.line((box[0], box[3] - 1, box[2] - 1, box[1]), fill=(112, 118, 132), width=1)
            row, column = divmod(cell, self.width)
            around = (cell - 1 if column > 0 else None, cell + 1 if column < self.width - 1 else None,
                      cell - self.width if row > 0 and row != self.height else None,
                      cell + self.width if row < self.height - 1 else None)
            boxes[cell] = box, around
        self.outline(draw, boxes, lambda c: self.row_colour(state, owners[c]) if c in owners else None)
        if 0 < len(fresh) < self.ring:
            for cell in fresh & set(owners):
                x0, y0, x1, y1 = self.cell_box(cell)
                twin = cell + self.ring if cell < self.width else cell - self.ring  # in the extra row, in ring row 0
                moved = 0 <= twin < len(state["memory"]) and state["memory"][cell] == before["memory"][twin]
                draw.ellipse((x0 + 5, y0 + 5, x1 - 6, y1 - 6), fill=STRADDLE if moved else FRESH, outline=(20, 20, 20))
        x0, y0, x1, y1 = self.cell_box(state["row_begins"][0])
        draw.rectangle((x0 - 2, y0 - 2, x1 + 1, y1 + 1), outline=POINTER, width=4)

    def copied(self, state, before):
        """Which way the extra row was copied on the way to this state, if it was."""
        if before is None or abs(state["x"] - before["x"]) > self.width // 2:
            return None
        column = [s["row_begins"][0] % self.width for s in (before, state)]
        if state["dx"] > 0 and column[1] < column[0]:
            return "extra row → ring row 0"
        if state["dx"] < 0 and (column[0] == 0 or column[1] > column[0]):
            return "ring row 0 → extra row"
        return None

    def draw_legend(self, draw, state, before):
        x, y = MEMORY_AT[0], MEMORY_AT[1] + (self.height + 1) * CELL + EXTRA_GAP + 22
        start = state["row_begins"][0]
        entries = (
            (POINTER, f"read pointer: cell {start}, column {start % self.width} of ring row {start // self.width}"),
            (BEFORE, f"rows read first: {state['rows_to_wrap']} rows to wrap"),
            (STRADDLE, "the row that runs into the extra row" + ("" if self.straddling_row(state) is not None else ": none")),
            (AFTER, f"rows read after the wrap: {self.height - state['rows_to_wrap']}"),
            (None, "stale: read by no row"),
            (FRESH, "copied from the map in this step"),
        )
        copy = self.copied(state, before)
        if copy:
            draw.ellipse((x + 3, y + 135, x + 11, y + 143), fill=STRADDLE)
            draw.text((x + 24, y + 130), f"copied within the memory first: {copy}", font=self.small, fill=INK)
        for i, (colour, text) in enumerate(entries):
            top = y + i * 22
            if colour is None:
                draw.rectangle((x, top, x + 13, top + 13), fill=PANEL)
                draw.line((x, top + 13, x + 13, top), fill=(150, 156, 170), width=1)
            elif colour == FRESH:
                draw.ellipse((x + 3, top + 3, x + 11, top + 11), fill=FRESH)
            else:
                draw.rectangle((x, top, x + 13, top + 13), outline=colour, width=3)
            draw.text((x + 24, top - 2), text, font=self.small, fill=INK)

    def frame(self, state, before):
        image = Image.new("RGB", SIZE, BACKGROUND)
        draw = ImageDraw.Draw(image)
        draw.text((24, 16), state["caption"], font=self.title, fill=INK)
        draw.text((MAP_AT[0], MAP_AT[1] - 24), f"The map, and the view on it at ({state['x']}, {state['y']})",
                  font=self.label, fill=FAINT)
        draw.text((VIEW_AT[0], VIEW_AT[1] - 24), "The view, as its rows are read", font=self.label, fill=FAINT)
        draw.text((MEMORY_AT[0], MEMORY_AT[1] - 24), "The buffer in memory", font=self.label, fill=FAINT)
        extra = self.cell_box(self.ring)
        draw.text((extra[0] - 8, extra[1] + CELL // 2), "extra", font=self.small, fill=FAINT, anchor="rm")
        self.draw_map(draw, state)
        self.draw_view(draw, state)
        self.draw_memory(draw, state, before)
        self.draw_legend(draw, state, before)
        return image


def save_film(frames, durations, path):
    palette = Image.new("RGB", (SIZE[0], SIZE[1] * 3))
    for i, frame in enumerate((frames[0], frames[len(frames) // 2], frames[-2])):
        palette.paste(frame, (0, i * SIZE[1]))
    palette = palette.quantize(96, dither=Image.Dither.NONE)
    indexed = [frame.quantize(palette=palette, dither=Image.Dither.NONE) for frame in frames]
    indexed[0].save(path, save_all=True, append_images=indexed[1:], duration=durations, loop=0, optimize=False)


def main():
    if len(sys.argv) not in (2, 3):
        sys.exit(__doc__)
    docs = sys.argv[2] if len(sys.argv) == 3 else os.path.join(os.path.dirname(os.path.abspath(__file__)), "../docs")
    try:
        told = subprocess.run([sys.argv[1]], check=True, stdout=subprocess.PIPE, text=True).stdout
    except (OSError, subprocess.CalledProcessError) as error:
        sys.exit(f"ring_movie.py: {error}")
    shape, *states = map(json.loads, told.splitlines())
    film = Film(shape)
    os.makedirs(os.path.join(docs, "ring"), exist_ok=True)
    frames, durations, caption = [], [], None
    for before, state in zip([None] + states[:-1], states):
        frames.append(film.frame(state, before))
        durations.append(HOLD_MS if state["still"] or state["caption"] != caption else STEP_MS)
        caption = state["caption"]
        if state["still"]:
            frames[-1].quantize(128).save(os.path.join(docs, "ring", state["still"] + ".png"), optimize=True)
    save_film(frames, durations, os.path.join(docs, "ring.gif"))


if __name__ == "__main__":
    main()
