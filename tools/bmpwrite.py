"""Writes uncompressed BMP files for the scripts of tools/ that make pictures."""
import struct


def bmp(path, width, height, bits, rows, palette=None):
    """Writes an uncompressed bottom-up BMP; rows[0] is the top row.

    A 24-bit row is a list of (r, g, b); an 8-bit row a list of indices."""
    stride = (width * bits // 8 + 3) & ~3
    colours = len(palette) if palette else 0
    offset = 14 + 40 + 4 * colours
    size = offset + stride * height
    data = bytearray()
    data += struct.pack("<2sIHHI", b"BM", size, 0, 0, offset)
    data += struct.pack("<IiiHHIIiiII", 40, width, height, 1, bits, 0,
                        stride * height, 2835, 2835, colours, 0)
    for r, g, b in palette or []:
        data += bytes((b, g, r, 0))
    for row in reversed(rows):
        line = bytearray()
        for px in row:
            line += bytes((px[2], px[1], px[0])) if bits == 24 else bytes((px,))
        line += b"\0" * (stride - len(line))
        data += line
    with open(path, "wb") as f:
        f.write(data)
