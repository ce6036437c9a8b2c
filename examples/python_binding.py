"""The records of RVK_mod_scroll2D for Python, made from records.json. For a 32-bit interpreter: the module shares its memory.

    records = Records("PREFIX/share/RVK_mod_scroll2D/records.json")
    screen = records.new("MapRecord", width=320, height=200, pixels=...)     # a ctypes.Structure
    runtime = records.new("HostRuntime", PopInt=lambda: arguments.pop())     # slots are Python functions

A record keeps what is put into its fields, and whoever passes its address on keeps the record. Functions that return a
record return its address (ctypes.addressof), or None. An exception does not leave a slot: it is printed, and the slot
returns 0.
"""
import ctypes
import json

NUMBERS = {"int32_t": ctypes.c_int32, "uint32_t": ctypes.c_uint32, "uint16_t": ctypes.c_uint16, "uint8_t": ctypes.c_uint8,
           "char*": ctypes.c_char_p, "void*": ctypes.c_void_p, "void": None}


class Records:
    def __init__(self, path):
        with open(path, encoding="utf-8") as text:
            layout = json.load(text)
        if ctypes.sizeof(ctypes.c_void_p) != layout["pointer_bytes"]:
            raise ImportError(f"{layout['module']} needs an interpreter with pointers of {layout['pointer_bytes']} bytes")
        self.version = layout["version"]
        self.types = {record["name"]: type(record["name"], (ctypes.Structure,), {}) for record in layout["records"]}
        for record in layout["records"]:
            made = self.types[record["name"]]
            made._fields_ = [(field["name"], self.field(field)) for field in record["fields"]]
            for field in record["fields"]:
                assert getattr(made, field["name"]).offset == field["byte"], f"{record['name']}.{field['name']}"

    def field(self, field):
        if field["type"] != "function":
            return self.plain(field["type"]) * field["count"] if "count" in field else self.plain(field["type"])
        # Slots in Python may return numbers only, so an address is one.
        result = ctypes.c_void_p if field["result"].endswith("*") else self.plain(field["result"])
        return ctypes.CFUNCTYPE(result, *(self.plain(argument["type"]) for argument in field["arguments"]))

    def plain(self, name):
        name = name.removeprefix("const ")
        if name in NUMBERS or name in self.types:
            return NUMBERS[name] if name in NUMBERS else self.types[name]
        return ctypes.POINTER(self.plain(name.removesuffix("*")))

    def new(self, name, **fields):
        made, types = self.types[name](), dict(self.types[name]._fields_)
        for field, value in fields.items():
            kind = types[field]  # a name that the record lacks is an error
            setattr(made, field, kind(value) if callable(value) else value)
        return made


def pinned(function):
    """A function that was read from a record, to be kept when the record is gone."""
    return type(function)(ctypes.cast(function, ctypes.c_void_p).value)
