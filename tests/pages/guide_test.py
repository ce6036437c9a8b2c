#!/usr/bin/python3
"""The pages, those for script authors above all, against what they speak of: pictures, scripts, functions, fields."""
import pathlib
import re
import struct
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
DOCS, DEMOS = ROOT / "docs", ROOT / "demos"
PAGES = {path: path.read_text() for path in (ROOT / "README.md", *DOCS.glob("*.md"))}
GUIDE, GALLERY = PAGES[DOCS / "script-authors.md"], PAGES[DOCS / "gallery.md"]


def pictures(text):
    return {(DOCS / name).resolve() for name in re.findall(r"!\[[^]]*\]\(([^)]+)\)", text)}


def anchors(text):
    return {re.sub(r"[^\w -]", "", heading.lower()).replace(" ", "-")
            for heading in re.findall(r"^#+ (.*)$", text, re.MULTILINE)}


class Pages(unittest.TestCase):
    def test_links_and_names_lead_somewhere(self):
        found = 0
        for page, text in PAGES.items():
            for name, heading in re.findall(r"\]\(([^)#]*)#?([^)]*)\)", text):
                other = (page.parent / name).resolve() if name else page
                self.assertTrue(other.exists(), f"{page}: {name}")
                if heading:
                    self.assertIn(heading, anchors(PAGES[other]), f"{page}: {name}")
            names = re.findall(r"`((?:bench|cmake|docs|examples|fuzz|host|module|player|tests|tools)/[\w./]+)`", text)
            if page.name != "contributing.md":  # which may name a script that the reader is to write
                names += re.findall(r"demos/[\w/]+\.lua", text)
            for name in names:
                self.assertTrue((ROOT / name).exists(), f"{page}: {name}")
            found += len(names)
        self.assertGreater(found, 50)

    def test_the_names_that_pages_take_from_the_code_are_in_it(self):
        """Of the pages that point into the module; where one says "`name` in `file`", in that file."""
        code = "".join(path.read_text() for path in (ROOT / "module").glob("*/*"))
        for page in (DOCS / "exactness.md", DOCS / "the-ring.md"):
            text = " ".join(PAGES[page].split())
            names = set(re.findall(r"`([A-Za-z_]\w+)`", text))
            self.assertTrue(names)
            self.assertFalse(names - set(re.findall(r"\w+", code)), page)
            for name, source in re.findall(r"`(\w+)` in `([a-z/]+/\w+\.[a-z]+)`", text):
                self.assertIn(name, re.findall(r"\w+", (ROOT / source).read_text()), f"{page}: {source}")

    def test_every_demo_and_every_picture_is_shown(self):
        demos = set(DEMOS.glob("*.lua"))
        self.assertEqual(pictures(GALLERY), {demo.with_suffix(".png") for demo in demos})
        self.assertEqual(set(re.findall(r"\./play (demos/\w+\.lua)", GALLERY)), {f"demos/{demo.name}" for demo in demos})
        self.assertFalse(set(DEMOS.glob("guide/*.png")) - pictures(GUIDE))

    def test_the_printed_scripts_are_the_ones_that_are_played(self):
        printed = re.findall(r"```lua\n(set_mode.*?)```", GUIDE, re.DOTALL)
        for name, text in zip(("first", "animation"), printed, strict=True):
            lines = (DEMOS / "guide" / f"{name}.lua").read_text().splitlines(keepends=True)
            # A reader saves it in a folder beside demos/, so the way to the pictures is another.
            played = "".join(line for line in lines if not line.startswith("-- ")).replace('"../art/', '"../demos/art/')
            self.assertEqual(re.sub(" +--", " --", text), re.sub(" +--", " --", played))

    def test_the_table_of_art_has_every_picture_and_its_size(self):
        listed = {}
        text = GUIDE.replace("`depth1` to `depth9`", " ".join(f"`depth{n}`" for n in range(1, 10)))
        for names, sizes in re.findall(r"^\| !.*? \| (`\w+`.*?) \| (\d+ × .*?) \|", text, re.MULTILINE):
            names, sizes = re.findall(r"`(\w+)`", names), re.findall(r"(\d+) × (\d+)", sizes)
            listed.update(zip(names, sizes if len(sizes) > 1 else sizes * len(names)))
        sizes = {path.stem: struct.unpack(">II", path.read_bytes()[16:24])      # in the first chunk of a PNG
                 for path in (DEMOS / "art").glob("*.png") if "." not in path.stem}
        self.assertEqual(listed, {name: tuple(map(str, size)) for name, size in sizes.items()})

    def test_everything_a_script_can_name_is_described(self):
        source = (ROOT / "module/entry/registration.cpp").read_text()
        functions, constants = set(re.findall(r'\{"(\w+)\(I', source)), re.findall(r'\{"(\w+)", \1\}', source)
        fields = dict(re.findall(r'"int (\w+) *= (-?\d+);"', source))
        self.assertEqual((len(functions) > 5, len(constants) > 4, len(fields)), (True, True, 15))
        headings = " ".join(re.findall(r"^### (.*)$", GUIDE, re.MULTILINE))
        self.assertFalse(functions - set(re.findall(r"\w+", headings)))
        self.assertFalse({f"`{name}`" for name in constants} - set(re.findall(r"`\w+`", GUIDE)))
        table = GUIDE[GUIDE.index("## Fields"):GUIDE.index("## Errors")].replace("\N{MINUS SIGN}", "-")
        described = {name: default for names, default in re.findall(r"^\| (`.*?`) \| (-?\d+) ", table, re.MULTILINE)
                     for name in re.findall(r"`(\w+)`", names)}
        self.assertEqual(described, fields)
        bindings = "".join(path.read_text() for path in (ROOT / "player/script").glob("*_bindings.cpp"))
        own = set(re.findall(r'\{"([a-z]\w+)", \d+, \w+, ', bindings))
        self.assertIn("load_map", own)
        self.assertFalse(own - set(re.findall(r"`(\w+)\(", PAGES[DOCS / "player-scripts.md"])))


unittest.main()
