#!/usr/bin/python3
"""The SDK as the author of a host has it: what is installed, its pages, its examples and the steps of the guide.

usage: sdk_test.py [Sdk | Layout | Python | Release]

Layout reads the debug information of a release build, Python needs the tree of tools/fetch_python.sh.

From the environment: BUILD, the folder of a build, else build/release; CC, the C compiler with the options of its target;
FLAGS, what every object of that build is compiled with besides -m32 (the sanitizers, if any); EMULATOR, what runs the
target's programs, if they need one.
"""
import json
import os
import pathlib
import re
import runpy
import shutil
import subprocess
import sys
import unittest

from elftools.elf.elffile import ELFFile

ROOT = pathlib.Path(__file__).resolve().parents[2]
BUILD = pathlib.Path(os.environ.get("BUILD", ROOT / "build/release"))
SDK, WORK = BUILD / "sdk", BUILD / "sdk_test"
BUILT = next(path for path in BUILD.glob("RVK_mod_scroll2D.*") if path.suffix in (".so", ".dll"))
PAGES, MODULE, SYMBOLS = SDK / "share/doc/RVK_mod_scroll2D", SDK / "lib/rvk" / BUILT.name, BUILD / f"{BUILT.name}.debug"
PYTHON = ROOT / "build/python"
COMPILERS = (("gcc", ".c", "c99", "c11"), ("clang", ".c", "c99", "c11"),
             ("g++", ".cpp", "c++11", "c++20"), ("clang++", ".cpp", "c++11", "c++20"))
WARNINGS = ("-Wall -Wextra -Wpedantic -pedantic-errors -Wconversion -Wshadow -Wcast-qual -Wundef -Wredundant-decls -Werror").split()
WRONG_TARGET = "RVK_mod_scroll2D is for targets with pointers of 4 bytes: compile with -m32"
EXAMPLES, PICTURES = ("one_page_host", "sprites_host"), ("picture.ppm", "sprites.ppm")
# Of the guide: packages, the kit from the sources, two hosts, the kit from an archive. The packages are here, or nothing
# would have been built.
BLOCKS = re.findall(r"```sh\n(.*?)```", (ROOT / "docs/host-authors.md").read_text(), re.DOTALL)
EMULATOR = os.environ.get("EMULATOR", "").split()
UNCACHED = {name: value for name, value in os.environ.items() if "LAUNCHER" not in name}


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
        return output

    def same_picture(self, drawn, example):
        committed = ROOT / f"docs/host/{example}.png"
        self.succeed(ROOT / "tools/pictures.py", "check", drawn, committed)


class Sdk(Case):
    @classmethod
    def setUpClass(cls):
        cls().succeed("cmake", "--install", BUILD, "--prefix", empty(SDK))
        empty(WORK)

    def compiled(self, source, *words):
        program = WORK / source.stem
        self.succeed(os.environ.get("CC", "cc"), "-m32", "-std=c99", "-Wall", "-Wextra", "-Wpedantic", "-Wconversion", "-Werror",
                     *os.environ.get("FLAGS", "").split(), *(words or ("-I", SDK / "include")), source, "-ldl", "-o", program)
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
        if not SYMBOLS.exists():  # the build keeps them in the module
            listed.remove("lib/debug/")
        for path in SDK.rglob("*"):
            name = str(path.relative_to(SDK))
            self.assertTrue(path.is_dir() or any(name.startswith(entry) for entry in listed), name)
        self.assertTrue(all((SDK / entry).exists() for entry in listed), listed)
        for symbols in SDK.glob("lib/debug/.build-id/*/*.debug"):
            self.assertIn(f"Build ID: {symbols.parent.name}{symbols.stem}\n", run("readelf", "-n", MODULE)[1])

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

    def test_cmake_and_pkg_config_find_what_the_examples_need_for_their_pictures(self):
        drawn, flags = WORK / "drawn.ppm", f"-DCMAKE_C_FLAGS={os.environ.get('FLAGS', '')}"
        project = empty(WORK / "project")
        (project / "CMakeLists.txt").write_text(
            "cmake_minimum_required(VERSION 3.13)\nproject(host C)\nfind_package(RVK_mod_scroll2D ${WANTED} REQUIRED)\n"
            f"add_executable(host {PAGES}/examples/one_page_host.c)\n"
            "target_link_libraries(host RVK_mod_scroll2D::headers ${CMAKE_DL_LIBS} -m32)\n"
            "target_compile_options(host PRIVATE -m32)\nfile(SIZE ${RVK_mod_scroll2D_RECORDS} size)\n"
            f"add_custom_command(TARGET host POST_BUILD COMMAND host ${{RVK_mod_scroll2D_MODULE}} {drawn})\n")
        configure = "cmake", "-S", project, f"-DCMAKE_PREFIX_PATH={SDK}", f"-DCMAKE_C_COMPILER={os.environ.get('CC', 'cc')}"
        for name, words in (("64", (flags,)), ("32", (flags + " -m32",))):
            self.succeed(*configure, "-B", project / name, "-DWANTED=1.0", *words)
            self.succeed("cmake", "--build", project / name)
            self.same_picture(drawn, "one_page_host")
            drawn.unlink()
        self.assertIn('compatible with requested version "2"', " ".join(run(*configure, "-B", project / "2", "-DWANTED=2")[1].split()))
        def ask(*words):
            environment = dict(os.environ, PKG_CONFIG_PATH=str(SDK / "lib/pkgconfig"))
            return self.succeed("pkg-config", *words, "RVK_mod_scroll2D", env=environment).strip()
        self.assertEqual(ask("--modversion"), json.loads(pathlib.Path(ask("--variable=records")).read_text())["version"])
        self.assertIn(f"RVK_mod_scroll2D {ask('--modversion')}\0".encode(), MODULE.read_bytes())
        program = self.compiled(PAGES / "examples/sprites_host.c", *ask("--cflags").split())
        self.succeed(program, ask("--variable=module"), drawn)
        self.same_picture(drawn, "sprites_host")

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


def type_name(die):
    """Of what debug information says of a type: as records.json spells it, functions by result and arguments."""
    def behind(die):
        return type_name(die.get_DIE_from_attribute("DW_AT_type")) if "DW_AT_type" in die.attributes else "void"
    kind, name = die.tag.removeprefix("DW_TAG_"), die.attributes.get("DW_AT_name")
    if kind == "pointer_type":
        return behind(die) + "*" * (not behind(die).endswith(")"))
    if kind == "array_type":
        bounds = next(die.iter_children()).attributes
        return f"{behind(die)}[{bounds['DW_AT_count'].value if 'DW_AT_count' in bounds else bounds['DW_AT_upper_bound'].value + 1}]"
    if kind == "subroutine_type":
        return f"{behind(die)}({', '.join(behind(argument) for argument in die.iter_children())})"
    if kind == "const_type":
        return "const " + behind(die)
    return behind(die) if kind == "typedef" and not name.value.endswith(b"_t") else name.value.decode()


class Layout(Case):
    def test_the_records_for_machines_are_those_of_the_debug_information(self):
        found, symbols = {}, SYMBOLS
        if BUILT.suffix == ".dll":  # what reads it knows ELF alone
            symbols = BUILD / "symbols.elf"
            self.succeed("objcopy", "-O", "elf32-i386", SYMBOLS, symbols)
        with symbols.open("rb") as file:
            for unit in ELFFile(file).get_dwarf_info().iter_CUs():
                for die in unit.get_top_DIE().iter_children():
                    if die.tag == "DW_TAG_structure_type" and {"DW_AT_name", "DW_AT_byte_size"} <= set(die.attributes):
                        members = [m for m in die.iter_children() if m.tag == "DW_TAG_member"]
                        found[die.attributes["DW_AT_name"].value.decode()] = die.attributes["DW_AT_byte_size"].value, [
                            (m.attributes["DW_AT_name"].value.decode(), m.attributes["DW_AT_data_member_location"].value,
                             type_name(m.get_DIE_from_attribute("DW_AT_type"))) for m in members]
        layout = json.loads((BUILD / "records.json").read_text())
        self.assertGreater(len(layout["records"]), 15)
        for record in layout["records"]:
            fields = [(f["name"], f["byte"], f"{f['result']}({', '.join(a['type'] for a in f['arguments'])})"
                       if f["type"] == "function" else f["type"] + (f"[{f['count']}]" if "count" in f else "")) for f in record["fields"]]
            self.assertEqual(found[record["name"]], (record["bytes"], fields), record["name"])


class Python(Case):
    def test_the_binding_made_from_the_layout_draws_the_picture_of_the_guide(self):
        prefix = empty(BUILD / "python_test")
        self.succeed("cmake", "--install", BUILD, "--prefix", prefix)
        program, drawn = prefix / "share/doc/RVK_mod_scroll2D/examples/python_host.py", prefix / "drawn.ppm"
        environment = dict(os.environ, LD_LIBRARY_PATH=str(PYTHON / "usr/lib/i386-linux-gnu"), PYTHONHOME=str(PYTHON / "usr"))
        self.assertEqual(self.succeed(PYTHON / "usr/bin/python3.11", "-B", program, prefix, drawn, env=environment), "")
        self.same_picture(drawn, "one_page_host")
        status, output = run(sys.executable, "-B", program, prefix, drawn)
        self.assertEqual((status, output.splitlines()[-1:]), (1, ["ImportError: RVK_mod_scroll2D needs an interpreter with pointers of 4 bytes"]))


class Release(Case):
    def build_as_the_guide_says(self, sdk):
        self.succeed("sh", "-e", "-c", re.sub(r"src=\S+", f"src='{ROOT}'", BLOCKS[1]), cwd=sdk.parent, env=UNCACHED)

    def play_as_the_guide_says(self, folder):
        self.succeed("sh", "-e", "-c", BLOCKS[2] + BLOCKS[3], cwd=folder)

    def play_emulated(self, folder):
        for example, picture in zip(EXAMPLES, PICTURES):
            self.succeed(*os.environ["CC"].split(), "-std=c99", "-I", "sdk/include",
                         f"sdk/share/doc/RVK_mod_scroll2D/examples/{example}.c", "-o", "host.exe", cwd=folder)
            self.succeed(*EMULATOR, "./host.exe", f"sdk/lib/rvk/{MODULE.name}", picture, cwd=folder)

    def test_an_archive_is_the_same_from_another_folder_and_leads_to_the_pictures(self):
        """Made by tools/release in a copy of the sources, and by hand: as the guide says, or from the build under test."""
        folder, release = empty(BUILD / "release_test"), runpy.run_path(str(ROOT / "tools/release"))
        target = next(name for name, (preset, *_) in release["TARGETS"].items() if preset == BUILD.name)
        sources, built, unpacked = folder / "elsewhere", empty(folder / "built"), empty(folder / "unpacked")
        shutil.copytree(ROOT, sources, ignore=shutil.ignore_patterns("build", "out", ".git", "__pycache__"))
        tree = release["TARGETS"][target][2]
        if tree:
            shutil.copytree(ROOT / tree, sources / tree, symlinks=True, copy_function=os.link)
        self.succeed(sources / "tools/release", "--out", folder, target, env=UNCACHED)
        self.succeed("sha256sum", "--check", "--strict", "SHA256SUMS", cwd=folder)
        if EMULATOR:
            self.succeed("cmake", "--install", BUILD, "--prefix", built / "sdk")
        else:
            self.build_as_the_guide_says(built / "sdk")
        archive = next(folder.glob(f"scroll2d-*-{target}.*"))
        if EMULATOR:
            shutil.unpack_archive(archive, unpacked)
            (unpacked / archive.name.removesuffix(release["TARGETS"][target][1])).rename(unpacked / "sdk")
        else:
            shutil.copy(archive, unpacked)
            self.succeed("sh", "-e", "-c", BLOCKS[4], cwd=unpacked)
        files = [path.relative_to(built) for path in built.glob("sdk/**/*") if path.is_file()]
        self.assertEqual([path for path in files if (unpacked / path).read_bytes() != (built / path).read_bytes()], [])
        self.assertTrue(release["pack"](built / "sdk", target) == archive.read_bytes(), "the same files, but another archive")
        (self.play_emulated if EMULATOR else self.play_as_the_guide_says)(unpacked)
        for example, picture in zip(EXAMPLES, PICTURES):
            self.same_picture(unpacked / picture, example)

    def test_a_mistake_has_a_message(self):
        sources = empty(BUILD / "release_mistakes")
        shutil.copytree(ROOT / "tools", sources / "tools")
        shutil.copy(ROOT / "CMakeLists.txt", sources)
        for target, message in (("linux-m68k", "no such target"), ("linux-armhf", "no tree to build"), ("linux-i386", "cmake"),
                                ("linux-i386", "not committed")):
            if message == "not committed":
                self.succeed("git", "init", "-q", sources)
            status, output = run(sources / "tools/release", target)
            self.assertEqual((status, output.startswith(f"release: {message}")), (1, True), output)


if __name__ == "__main__":
    unittest.main()
