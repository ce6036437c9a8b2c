#!/usr/bin/env python3
"""The pages, those for script authors above all, against what they speak of: pictures, scripts, functions, fields."""
import pathlib
import re
import struct
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
DOCS, DEMOS = ROOT / "docs", ROOT / "demos"
GUIDE, GALLERY, PLAYER = DOCS / "script-authors.md", DOCS / "gallery.md", DOCS / "player-scripts.md"


def pictures(page):
    return {(page.parent / name).resolve() for name in re.findall(r"!\[[^]]*\]\(([^)]+)\)", page.read_text())}


def anchor(heading):
    return re.sub(r"[^\w -]", "", heading.lower()).replace(" ", "-")


def anchors(page):
    return {anchor(heading) for heading in re.findall(r"^#+ (.*)$", page.read_text(), re.MULTILINE)}


class Pages(unittest.TestCase):
    def test_links_lead_somewhere(self):
        for page in (ROOT / "README.md", *DOCS.glob("*.md")):
            text = page.read_text()
            for target in re.findall(r"\]\(([^)]+)\)", text):
                name, _, heading = target.partition("#")
                other = page.parent / name if name else page
                self.assertTrue(other.exists(), f"{page}: {target}")
                if heading:
                    self.assertIn(heading, anchors(other), f"{page}: {target}")
            if page not in (GUIDE, GALLERY, PLAYER):
                continue  # may name a script that the reader is to write
            for script in re.findall(r"demos/[\w/]+\.lua", text):
                self.assertTrue((ROOT / script).exists(), f"{page}: {script}")

    def test_the_sources_that_pages_name_are_there(self):
        folders = "bench|cmake|docs|examples|fuzz|host|module|player|tests|tools"
        found = 0
        for page in (ROOT / "README.md", *DOCS.glob("*.md")):
            for name in re.findall(rf"`((?:{folders})/[\w./]+)`", page.read_text()):
                found += 1
                self.assertTrue((ROOT / name).exists(), f"{page}: {name}")
        self.assertGreater(found, 50)

    def test_the_names_that_pages_take_from_the_code_are_in_it(self):
        """Of the pages that point into the module; where one says "`name` in `file`", in that file."""
        code = "".join(path.read_text() for path in (ROOT / "module").glob("*/*"))
        found = 0
        for page in (DOCS / "exactness.md", DOCS / "the-ring.md"):
            text = " ".join(page.read_text().split())
            names = set(re.findall(r"`([A-Za-z_]\w+)`", text))
            found += len(names)
            self.assertLessEqual(names, set(re.findall(r"\w+", code)), page)
            for name, source in re.findall(r"`(\w+)` in `([a-z/]+/\w+\.[a-z]+)`", text):
                self.assertIn(name, re.findall(r"\w+", (ROOT / source).read_text()), f"{page}: {source}")
        self.assertGreater(found, 50)

    def test_the_gallery_shows_and_plays_every_demo(self):
        demos = set(DEMOS.glob("*.lua"))
        self.assertEqual(pictures(GALLERY), {demo.with_suffix(".png") for demo in demos})
        played = set(re.findall(r"\./play (demos/\w+\.lua)", GALLERY.read_text()))
        self.assertEqual(played, {str(demo.relative_to(ROOT)) for demo in demos})

    def test_the_guide_shows_every_picture_made_for_it(self):
        self.assertLessEqual(set(DEMOS.glob("guide/*.png")), pictures(GUIDE))

    def test_the_printed_scripts_are_the_ones_that_are_played(self):
        printed = re.findall(r"```lua\n(set_mode.*?)```", GUIDE.read_text(), re.DOTALL)
        self.assertEqual(len(printed), 2)
        for name, text in zip(("first", "animation"), printed):
            lines = (DEMOS / "guide" / f"{name}.lua").read_text().splitlines(keepends=True)
            # A reader saves it in a folder beside demos/, so the way to the pictures is another.
            played = "".join(line for line in lines if not line.startswith("-- ")).replace('"../art/', '"../demos/art/')
            self.assertEqual(re.sub(" +--", " --", text), re.sub(" +--", " --", played))

    def test_the_table_of_art_has_every_picture_and_its_size(self):
        listed = {}
        for names, sizes in re.findall(r"^\| !.*? \| (`\w+`.*?) \| (\d+ × .*?) \|", GUIDE.read_text(), re.MULTILINE):
            names = re.sub(r"`depth1` to `depth9`", " ".join(f"`depth{n}`" for n in range(1, 10)), names)
            names, sizes = re.findall(r"`(\w+)`", names), re.findall(r"(\d+) × (\d+)", sizes)
            listed.update(zip(names, sizes if len(sizes) > 1 else sizes * len(names)))
        found = {}
        for path in (DEMOS / "art").glob("*.png"):
            if not path.name.endswith(".8.png"):
                width, height = struct.unpack(">II", path.read_bytes()[16:24])      # the first chunk of a PNG
                found[path.stem] = (str(width), str(height))
        self.assertEqual(listed, found)

    def test_everything_a_script_can_name_is_described(self):
        source, guide = (ROOT / "module/entry/registration.cpp").read_text(), GUIDE.read_text()
        headings = " ".join(re.findall(r"^### (.*)$", guide, re.MULTILINE))
        functions = set(re.findall(r'\{"(\w+)\(I', source))
        self.assertGreater(len(functions), 5)
        self.assertLessEqual(functions, set(re.findall(r"\w+", headings)))
        for name in re.findall(r'\{"(\w+)", \1\}', source):
            self.assertIn(f"`{name}", guide)
        fields = dict(re.findall(r'"int (\w+) *= (-?\d+);"', source))
        self.assertEqual(len(fields), 15)
        table = guide[guide.index("## Fields"):guide.index("## Errors")].replace("\N{MINUS SIGN}", "-")
        described = {name: default for names, default in re.findall(r"^\| (`.*?`) \| (-?\d+) ", table, re.MULTILINE)
                     for name in re.findall(r"`(\w+)`", names)}
        self.assertEqual(described, fields)


unittest.main()
