#!/usr/bin/env python3
"""Reads the layouts of the host's records back from the debug information of the built module.

usage: layout_test.py MODULE.so     (built with -g)

The asserts of module/contract/host_records.h hold the source to its words; this holds the finished file to the contract's
words, written down here a second time.
"""

import re
import subprocess
import sys

WORDS = {
    "ExportRegistrar": {"RegisterConstants": 0, "RegisterGlobals": 4, "RegisterFunctions": 6, "RegisterHooks": 7,
                        "GetRuntime": 9},
    "HostRuntime": {"GlobalData": 0, "Processes": 3, "ParamCount": 9, "PopInt": 14, "ReturnInt": 52, "RaiseError": 69,
                    "GlobalOffset": 72, "DeleteProcess": 78, "FrameState": 79, "Graphics": 80},
    "ProcessServices": {"FirstProcessOfType": 1, "ProcessExists": 7},
    "ProcessNode": {"data": 2, "next": 15},
    "ProcessLocals": {"status": 4, "scroll_mark": 9, "scroll_mask": 26, "file": 27, "graph": 28, "graph_table": 29, "x": 30,
                      "y": 31, "z": 32, "word33": 33, "region": 34, "resolution": 35, "word38": 38, "angle": 39, "size": 40,
                      "size_x": 41, "size_y": 42, "word43": 43, "word44": 44, "flags": 45, "word46": 46, "word47": 47,
                      "word48": 48, "word49": 49},
    "FrameState": {"suspend_flag": 7},
    "Graphics2DInterface": {"Video": 0, "ScreenMap": 2, "Regions": 4, "BlitSprite": 19, "BlitSpriteScaled": 20,
                            "BlitSpriteRotated": 21, "BlitSpriteRotatedScaled": 22, "BlitSpriteGeneral": 23,
                            "BlitSpriteRotatedGeneral": 24, "CreateBlitList": 29, "SelectBlitList": 30, "NewBlit": 31,
                            "SortBlitList": 33, "ClearBlitList": 34, "GetBlitList": 35, "BlitListCount": 36, "GetFile": 40,
                            "FileCount": 41, "SystemGraphCount": 42, "RegionCount": 43, "GetMap": 44, "RegionDefined": 45,
                            "ScrollSystem": 85},
    "VideoInfo": {"bits_per_pixel": 4, "reset_flag": 8},
    "FileRecord": {"word1": 1, "word2": 2},
    "MapEntry": {"word0": 0, "bitmap": 131},
    "MapRecord": {"width": 1, "height": 2, "pixels": 7, "alpha_flag": 8, "cpoint_count": 9, "cpoints": 11},
    "__RVKRegion__": {"x": 0, "x2": 1, "y": 2, "y2": 3},
    "__RVKPoint2D__": {"x": 0, "y": 1},
    "__RVKBlit2D__": {"id": 0, "owner": 1, "drawn": 2, "x": 3, "x2": 4, "y": 5, "y2": 6, "graph_table": 11, "pos_x": 12,
                      "pos_y": 13, "z": 14, "region": 16, "resolution": 17, "word20": 20, "angle": 21, "size": 22, "size_x": 23,
                      "size_y": 24, "word25": 25, "word26": 26, "flags": 27, "word28": 28, "word29": 29, "word30": 30,
                      "word31": 31, "has_clip": 36, "clip_x": 37, "clip_x2": 38, "clip_y": 39, "clip_y2": 40, "bitmap": 42,
                      "target": 43, "draw": 44},
    "BlitList": {"zorder": 6},
    "ScrollSystemInterface": {"BlitScroll2D": 0, "GetScrollRegion": 1, "GetScrollPoint": 2, "GetScrollPos": 3,
                              "GetProcessInScroll": 4, "GetProcessOutScroll": 5, "StopScroll": 6, "StopAllScroll": 7},
    "ConstantRow": {"name": 0, "value": 1},
    "FunctionRow": {"signature": 0, "return_type": 1, "zero": 2, "handler": 3},
    "HookRow": {"id": 0, "function": 1},
}


def records_of(module):
    """{record: {field: byte}} of every structure that the debug information describes, the fullest of each name."""
    dump = subprocess.run(["readelf", "--debug-dump=info", "--wide", module], check=True, capture_output=True, text=True).stdout
    records, entries = {}, []
    for line in dump.splitlines():
        if match := re.match(r" <(\w+)><\w+>: Abbrev Number: \d+ \(DW_TAG_(\w+)\)", line):
            entries.append((int(match[1], 16), match[2], {}))
        elif entries and (match := re.match(r"\s+<\w+>\s+DW_AT_(\w+)\s*:\s*(.*?)\s*$", line)):
            # A value may be led by its form: "(data1) 4", "(indirect string, offset: 0x1): name".
            entries[-1][2][match[1]] = re.sub(r"^(\([^)]*\):?\s*)+", "", match[2])
    record, depth = None, 0
    for level, tag, attributes in entries:
        if tag == "structure_type":
            record, depth = {}, level
            if "name" in attributes and "declaration" not in attributes:
                records.setdefault(attributes["name"], []).append(record)
        elif tag == "member" and record is not None and level == depth + 1 and "name" in attributes:
            record[attributes["name"]] = int(attributes.get("data_member_location", "0"), 0)
    return {name: max(found, key=len) for name, found in records.items()}


def main():
    found = records_of(sys.argv[1])
    wrong = []
    for record, words in WORDS.items():
        expected = {field: 4 * word for field, word in words.items()}
        if found.get(record) != expected:
            wrong.append(f"{record}: expected {expected}, found {found.get(record)}")
    print("\n".join(wrong) or f"{len(WORDS)} records, {sum(map(len, WORDS.values()))} fields in their places")
    sys.exit(bool(wrong))


if __name__ == "__main__":
    main()
