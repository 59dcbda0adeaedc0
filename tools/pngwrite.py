"""Writes 8-bit RGBA PNG files for the scripts of tools/ that make pictures."""
import struct
import zlib


def _chunk(kind, data):
    body = kind + data
    return struct.pack(">I", len(data)) + body + struct.pack(">I", zlib.crc32(body))


def png(path, width, height, rows):
    """Writes a non-interlaced RGBA PNG; rows[0] is the top row, a list of
    (r, g, b, a) with each channel 0 to 255."""
    raw = bytearray()
    for row in rows:
        raw.append(0)  # filter: none
        for px in row:
            raw += bytes(px)
    header = struct.pack(">IIBBBBB", width, height, 8, 6, 0, 0, 0)  # 8 bits, RGBA
    with open(path, "wb") as f:
        f.write(b"\x89PNG\r\n\x1a\n")
        f.write(_chunk(b"IHDR", header))
        f.write(_chunk(b"IDAT", zlib.compress(bytes(raw), 9)))
        f.write(_chunk(b"IEND", b""))
