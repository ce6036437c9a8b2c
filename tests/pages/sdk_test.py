#!/usr/bin/python3
"""The SDK as the author of a host has it: what is installed, its pages, its examples and the steps of the guide.

usage: sdk_test.py [Sdk | Guide]

From the environment: BUILD, the folder of a build, else build/release; CC, the C compiler; FLAGS, what every object of
that build is compiled with besides -m32 (the sanitizers, if any).
"""
import os
import pathlib
import re
import shutil
import subprocess
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
BUILD = pathlib.Path(os.environ.get("BUILD", ROOT / "build/release"))
SDK, WORK = BUILD / "sdk", BUILD / "sdk_test"
PAGES, MODULE = SDK / "share/doc/RVK_mod_scroll2D", SDK / "lib/rvk/RVK_mod_scroll2D.so"
COMPILERS = (("gcc", ".c", "c99", "c11"), ("clang", ".c", "c99", "c11"),
             ("g++", ".cpp", "c++11", "c++20"), ("clang++", ".cpp", "c++11", "c++20"))
WARNINGS = ("-Wall -Wextra -Wpedantic -pedantic-errors -Wconversion -Wshadow -Wcast-qual -Wundef -Wredundant-decls -Werror").split()
WRONG_TARGET = "RVK_mod_scroll2D is for targets with pointers of 4 bytes: compile with -m32"
EXAMPLES = "one_page_host", "sprites_host"


def run(*words, **options):
    done = subprocess.run(words, stdin=subprocess.DEVNULL, capture_output=True, text=True, **options)
    return done.returncode, done.stdout + done.stderr


def empty(folder):
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir()
    return folder


class Case(unittest.TestCase):
    def succeed(self, *words, **options):
        status, output = run(*words, **options)
        self.assertEqual(status, 0, output)

    def same_picture(self, drawn, example):
        committed = ROOT / f"docs/host/{example}.png"
        self.succeed(ROOT / "tools/pictures.py", "check", drawn, committed)


class Sdk(Case):
    @classmethod
    def setUpClass(cls):
        cls().succeed("cmake", "--install", BUILD, "--prefix", empty(SDK))
        empty(WORK)

    def compiled(self, source):
        program = WORK / source.stem
        self.succeed(os.environ.get("CC", "cc"), "-m32", "-std=c99", "-Wall", "-Wextra", "-Wpedantic", "-Wconversion", "-Werror",
                     *os.environ.get("FLAGS", "").split(), "-I", SDK / "include", source, "-ldl", "-o", program)
        return program

    def test_what_installed_pages_link_to_and_show_is_installed(self):
        pages = list(PAGES.glob("docs/*.md"))
        self.assertGreater(len(pages), 2)
        for page in pages:
            for target in re.findall(r"\]\(([^)#]+)", page.read_text()):
                self.assertTrue((page.parent / target).is_file(), f"{page.name}: {target}")

    def test_the_table_of_the_guide_lists_what_is_installed(self):
        guide = (PAGES / "docs/host-authors.md").read_text()
        listed = re.findall(r"^\| `((?:include|lib|share)/.*?)` \|", guide, re.MULTILINE)
        for path in SDK.rglob("*"):
            name = str(path.relative_to(SDK))
            self.assertTrue(path.is_dir() or any(name.startswith(entry) for entry in listed), name)
        self.assertTrue(all((SDK / entry).exists() for entry in listed), listed)

    def test_strangers_compile_the_headers_without_a_word_and_are_told_of_a_wrong_target(self):
        source = WORK / "host"
        text = ("#include <rvk/host_check.h>\nint missing(const HostRuntime* r, const ExportRegistrar* e);\n"
                "int missing(const HostRuntime* r, const ExportRegistrar* e)\n"
                "{ return rvk_missing_slot(r, 1) || rvk_missing_registrar_slot(e); }\n")
        for compiler, ending, *standards in COMPILERS:
            source.with_suffix(ending).write_text(text)
            for standard in standards if shutil.which(compiler) else ():
                words = compiler, f"-std={standard}", "-fsyntax-only", "-I", SDK / "include", source.with_suffix(ending)
                self.assertEqual(run(*words, "-m32", *WARNINGS), (0, ""), words)
                status, output = run(*words, "-m64")
                self.assertEqual((status != 0, output.count("error:"), WRONG_TARGET in output), (True, 1, True), output)

    def test_the_installed_examples_draw_what_the_guide_shows(self):
        for example in EXAMPLES:
            drawn = WORK / f"{example}.ppm"
            self.succeed(self.compiled(PAGES / f"examples/{example}.c"), MODULE, drawn)
            self.same_picture(drawn, example)

    def test_an_example_says_what_failed(self):
        program = self.compiled(PAGES / "examples/one_page_host.c")
        for arguments, status, message in (
                ((MODULE,), 2, "usage: "),
                (("RVK_mod_scroll2D.so", "x.ppm"), 1, "write a path with a slash, ./RVK_mod_scroll2D.so"),
                (("/no/such/module.so", "x.ppm"), 1, "cannot load the module: /no/such/module.so"),
                ((program, "x.ppm"), 1, "cannot load the module"),
                ((BUILD / "standin_empty.so", "x.ppm"), 1, "this is another library"),
                ((BUILD / "standin.so", "x.ppm"), 1, "registered no init, frame or release hook"),
                ((MODULE, "/no/such/folder/x.ppm"), 1, "cannot write /no/such/folder/x.ppm: No such file"),
                ((MODULE, "/dev/full"), 1, "cannot write all of /dev/full")):
            got, output = run(program, *arguments, cwd=WORK)
            self.assertEqual(got, status, output)
            self.assertIn(message, output)

    def test_a_slot_that_was_forgotten_ends_with_its_name(self):
        source = WORK / "forgetful.c"
        source.write_text(f'#define main whole\nint whole(int, char**);\n#include "{PAGES}/examples/sprites_host.c"\n'
                          "#undef main\n"
                          "int main(int argc, char** argv) { return runtime.PopInt = NULL, whole(argc, argv); }\n")
        status, output = run(self.compiled(source), MODULE, WORK / "x.ppm")
        self.assertEqual((status, output), (1, "sprites_host: HostRuntime.PopInt is null\n"))


class Guide(Case):
    def test_the_steps_lead_from_an_empty_folder_to_the_pictures(self):
        """All but the first block of shell lines: the packages are here, or nothing would have been built."""
        blocks = re.findall(r"```sh\n(.*?)```", (ROOT / "docs/host-authors.md").read_text(), re.DOTALL)
        self.assertEqual(len(blocks), 4, "packages, SDK, two hosts")
        steps = re.sub(r"src=\S+", f"src='{ROOT}'", "".join(blocks[1:]))
        folder = empty(BUILD / "host_guide")
        self.succeed("sh", "-e", "-c", steps, cwd=folder)
        for picture, example in zip(("picture.ppm", "sprites.ppm"), EXAMPLES):
            self.same_picture(folder / picture, example)


if __name__ == "__main__":
    unittest.main()
