"""PNG pictures as rows of RGB, with the standard library alone: what the gallery needs to compare two of them."""
import struct
import zlib

SIGNATURE = b"\x89PNG\r\n\x1a\n"
CHANNELS = {2: 3, 3: 1, 6: 4}  # colour type -> bytes per pixel


class Picture:
    """width and height in pixels; pixels: RGB bytes, row by row. Alpha is left out: screens are opaque."""

    def __init__(self, width, height, pixels):
        self.width, self.height, self.pixels = width, height, pixels

    def __eq__(self, other):
        return (self.width, self.height, self.pixels) == (other.width, other.height, other.pixels)


def read(path):
    """Decodes an 8-bit PNG, true colour or indexed, not interlaced. Raises ValueError for any other file."""
    data = path.read_bytes()
    if not data.startswith(SIGNATURE):
        raise ValueError(f"{path}: not a PNG")
    chunks, at = {}, len(SIGNATURE)
    while at < len(data):
        length, kind = struct.unpack_from(">I4s", data, at)
        chunks[kind] = chunks.get(kind, b"") + data[at + 8:at + 8 + length]
        at += length + 12
    width, height, depth, colour, _, _, interlaced = struct.unpack(">IIBBBBB", chunks[b"IHDR"])
    if depth != 8 or colour not in CHANNELS or interlaced:
        raise ValueError(f"{path}: depth {depth}, colour type {colour}, interlace {interlaced} are not read here")
    raw = _unfiltered(zlib.decompress(chunks[b"IDAT"]), width * CHANNELS[colour], height, CHANNELS[colour])
    return Picture(width, height, _rgb(raw, colour, chunks.get(b"PLTE", b"")))


def write(path, picture):
    stride = 3 * picture.width
    rows = (b"\0" + picture.pixels[y * stride:(y + 1) * stride] for y in range(picture.height))
    header = struct.pack(">IIBBBBB", picture.width, picture.height, 8, 2, 0, 0, 0)
    path.write_bytes(SIGNATURE + _chunk(b"IHDR", header) + _chunk(b"IDAT", zlib.compress(b"".join(rows)))
                     + _chunk(b"IEND", b""))


def difference(old, new):
    """(picture, count): the new picture darkened, with the pixels that differ in full magenta, and how many there are.

    Pictures of different sizes differ wherever only one of them has a pixel."""
    width, height = max(old.width, new.width), max(old.height, new.height)
    out, count = bytearray(), 0
    for y in range(height):
        before, after = _row(old, y, width), _row(new, y, width)
        for x in range(width):
            a, b = before[x], after[x]
            count += a != b
            out += bytes(c // 4 for c in b) if a == b else b"\xff\x00\xff"
    return Picture(width, height, bytes(out)), count


def _row(picture, y, width):
    if y >= picture.height:
        return [None] * width
    stride = 3 * picture.width
    row = picture.pixels[y * stride:(y + 1) * stride]
    return [row[3 * x:3 * x + 3] for x in range(picture.width)] + [None] * (width - picture.width)


def _chunk(kind, body):
    return struct.pack(">I", len(body)) + kind + body + struct.pack(">I", zlib.crc32(kind + body))


def _rgb(raw, colour, palette):
    if colour == 2:
        return bytes(raw)
    if colour == 6:
        del raw[3::4]
        return bytes(raw)
    entries = [palette[i:i + 3] for i in range(0, len(palette), 3)]
    return b"".join([entries[index] for index in raw])


def _unfiltered(data, stride, height, step):
    """Takes the filters of the PNG format back, row by row; `step` is the distance to the byte on the left."""
    out, above = bytearray(), bytearray(stride)
    for y in range(height):
        start = y * (stride + 1)
        row = bytearray(data[start + 1:start + 1 + stride])
        _FILTERS[data[start]](row, above, step)
        out += row
        above = row
    return out


def _none(row, above, step):
    pass


def _sub(row, above, step):
    for i in range(step, len(row)):
        row[i] = row[i] + row[i - step] & 255


def _up(row, above, step):
    for i, up in enumerate(above):
        row[i] = row[i] + up & 255


def _average(row, above, step):
    for i, up in enumerate(above):
        left = row[i - step] if i >= step else 0
        row[i] = row[i] + (left + up >> 1) & 255


def _paeth(row, above, step):
    for i, up in enumerate(above):
        left, corner = (row[i - step], above[i - step]) if i >= step else (0, 0)
        guess = left + up - corner
        to_left, to_up, to_corner = abs(guess - left), abs(guess - up), abs(guess - corner)
        nearest = left if to_left <= to_up and to_left <= to_corner else up if to_up <= to_corner else corner
        row[i] = row[i] + nearest & 255


_FILTERS = (_none, _sub, _up, _average, _paeth)
