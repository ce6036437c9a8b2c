#!/usr/bin/python3
"""The finished DLL: what it needs and shows, that it may lie anywhere, and what Windows says of it.

usage: pe_test.py OBJDUMP MODULE.dll EXPORTS.map VERSION
"""
import os
import re
import subprocess
import sys
import unittest

OBJDUMP, MODULE, EXPORTS, VERSION = sys.argv[1:]
LIMIT = 200_000  # bytes of the file


HEADERS = subprocess.run([OBJDUMP, "-p", MODULE], check=True, capture_output=True, text=True, env={**os.environ, "LC_ALL": "C", "TZ": "UTC"}).stdout


def word(name):
    return int(re.search(rf"^{name}\s+(?:0x)?([0-9a-f]+)$", HEADERS, re.MULTILINE)[1], 16)


class Dll(unittest.TestCase):
    def test_it_needs_malloc_free_and_memcpy_of_the_c_runtime_and_nothing_else(self):
        self.assertEqual(re.findall(r"DLL Name: (\S+)", HEADERS), ["msvcrt.dll"])
        imports = re.findall(r"^\t[0-9a-f]+\s+\d+\s+(\S+)$", HEADERS, re.MULTILINE)
        self.assertEqual(sorted(imports), ["free", "malloc", "memcpy"])

    def test_it_shows_the_listed_names_undecorated_and_no_others(self):
        listed = open(EXPORTS).read().partition("local:")[0]
        table = HEADERS.partition("[Ordinal/Name Pointer] Table")[2].partition("\n\n")[0]
        names = re.findall(r"^\t\[ *\d+\](?: \+base\[ *\d+\] [0-9a-f]+)? (\S+)$", table, re.MULTILINE)
        self.assertEqual(sorted(names), sorted(re.findall(r"(\w+);", listed)))
        self.assertEqual(len(names), 12)

    def test_it_is_a_small_32_bit_dll_that_may_lie_anywhere_and_has_no_start_up_code(self):
        self.assertTrue("file format pei-i386" in HEADERS)
        characteristics, flags = word("Characteristics"), word("DllCharacteristics")
        self.assertEqual(characteristics & 0x2103, 0x2102, "a DLL of 32 bits, with its relocations")
        self.assertEqual(flags & 0x140, 0x140, "dynamic base, no execution of data")
        self.assertGreater(HEADERS.count(" HIGHLOW"), 100)
        self.assertEqual(word("AddressOfEntryPoint"), 0)
        self.assertLess(os.path.getsize(MODULE), LIMIT)

    def test_the_same_sources_give_the_same_file(self):
        self.assertEqual(re.findall(r"^Time/Date\t+(.*)", HEADERS, re.MULTILINE), ["Thu Jan  1 00:00:00 1970"])

    def test_windows_can_tell_its_version(self):
        data = open(MODULE, "rb").read()
        for key, value in (("ProductName", "RVK_mod_scroll2D"), ("FileVersion", VERSION)):
            text = re.escape(key.encode("utf-16-le") + b"\0\0") + b"(?:\0\0)?" + re.escape(value.encode("utf-16-le") + b"\0\0")
            self.assertTrue(re.search(text, data), key)
        numbers = b"".join(int(part).to_bytes(2, "little") for part in (VERSION + ".0").split("."))
        fixed = data.index(b"\xbd\x04\xef\xfe") + 8
        self.assertEqual([data[fixed + i:fixed + i + 2] for i in (2, 0, 6, 4)], [numbers[i:i + 2] for i in (0, 2, 4, 6)])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
