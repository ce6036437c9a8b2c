#!/usr/bin/python3
"""Writes the layout of the records that host and module share as JSON, for bindings in other languages.

usage: tools/records.py HEADER > records.json        HEADER: module/contract/host_records.h

docs/host-authors.md describes the form, the header whose a record or field is: both as they are read here.

Exit status 1: something in the header is not understood.
"""
import json
import re
import sys

POINTER_BYTES = 4
BYTES = {"uint8_t": 1, "uint16_t": 2, "int32_t": 4, "uint32_t": 4}
NAME = "RVK_mod_scroll2D"
# A declaration with the comment that follows on its line, or a comment of its own lines.
ITEM = re.compile(r"\s*(?:/\*(?P<above>.*?)\*/|(?P<declaration>[^;{}/]+);(?:[ ]*/\*(?P<beside>.*?)\*/)?)", re.DOTALL)
FUNCTION = re.compile(r"(?P<result>.+?) ?\( ?\*(?P<name>\w+)\)\((?P<arguments>.*)\)")
VARIABLE = re.compile(r"(?P<type>.+?) ?(?P<name>\w+)(?:\[(?P<count>\d+)\])?")


def words(text):
    """A comment or a declaration on one line, without the stars that begin the lines of a comment."""
    return " ".join(re.sub(r"\n \*(?= )", " ", text or "").split())


def function(match):
    arguments = [] if match["arguments"] == "void" else [VARIABLE.fullmatch(a.strip()) for a in match["arguments"].split(",")]
    return {"type": "function", "result": match["result"],
            "arguments": [{"name": a["name"], "type": a["type"]} for a in arguments]}


def field_type(declaration, routines):
    """The name of what is declared, and its type."""
    match = FUNCTION.fullmatch(declaration)
    if match:
        return match["name"], function(match)
    match = VARIABLE.fullmatch(declaration)
    if not match:
        raise ValueError(f"not understood: {declaration}")
    count = {"count": int(match["count"])} if match["count"] else {}
    return match["name"], dict(routines.get(match["type"], {"type": match["type"]}), **count)


def field_owner(name, text, record_owner):
    if record_owner == "module" or re.match(r"written\b|(S|P|L|SPL)\b", text):
        return "module"
    return "both" if "also written" in text and not name.startswith("reserved_") else "host"


def record(name, comment, body, routines):
    owner = "module" if comment.startswith("The module's.") else "host"
    fields, end, widest, above, place = [], 0, 1, "", 0
    while body[place:].strip():
        item = ITEM.match(body, place)
        if not item:
            raise ValueError(f"{name}: not understood: {body[place:].strip()}")
        place = item.end()
        if item["above"]:
            above = words(item["above"]) + " "
            continue
        field, kind = field_type(words(item["declaration"]), routines)
        size = BYTES.get(kind["type"], POINTER_BYTES if kind["type"].endswith("*") or kind["type"] == "function" else 0)
        if not size:
            raise ValueError(f"{name}.{field}: a type of unknown size: {kind['type']}")
        if end % size:
            raise ValueError(f"{name}.{field}: a gap without a name before it")
        text, above = above + words(item["beside"]), ""
        start, end, widest = end, end + size * kind.get("count", 1), max(widest, size)
        fields.append({"name": field, "byte": start, "bytes": end - start, **kind,
                       "owner": field_owner(field, text, owner), "text": text.strip()})
    return {"name": name, "bytes": -(-end // widest) * widest, "owner": owner, "text": comment, "fields": fields}


def read(header):
    version = re.search(r'#define RVK_MOD_SCROLL2D_VERSION "(.*)"', header)[1]
    header = re.sub(r"\bstruct (\w+)(?= *\*)", r"\1", header)  # in a record or an argument
    routines = {r["name"]: function(r) for r in map(FUNCTION.fullmatch, re.findall(r"^typedef (.*\(\*.*\));", header, re.MULTILINE))}
    found = re.findall(r"(?:/\*((?:(?!\*/).)*)\*/\n)?typedef struct (\w+) \{(.*?)\n\} \2;", header, re.DOTALL)
    if len(found) != header.count("typedef struct"):
        raise ValueError("a record is not understood")
    return {"module": NAME, "version": version, "pointer_bytes": POINTER_BYTES,
            "records": [record(name, words(comment), body, routines) for comment, name, body in found]}


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    try:
        with open(sys.argv[1], encoding="utf-8") as header:
            layout = read(header.read())
    except (OSError, ValueError) as problem:
        sys.exit(f"records.py: {problem}")
    # A field a line: what changed from one version to the next is seen at once.
    text = json.dumps(layout, indent=1, ensure_ascii=False)
    print(re.sub(r"\{\n {5}\S.*?\n {4}\}", lambda field: re.sub(r"\n +", " ", field[0]), text, flags=re.DOTALL))


if __name__ == "__main__":
    main()
