#!/usr/bin/env python3
"""Writes the pictures of samples/, the ones ./run.sh shows without arguments.

Each one exercises something a viewer must get right: row padding, a
palette, sizes that don't fall on tile edges. Run from anywhere:
    python3 tools/make_samples.py
"""
import math
import os

from bmpwrite import bmp

HERE = os.path.dirname(os.path.abspath(__file__))
OUT = os.path.join(os.path.dirname(HERE), "samples")




def sunset(width, height):
    """A sky gradient with a sun and a dark sea: smooth tones and a hard edge."""
    rows = []
    sun_x, sun_y, sun_r = width * 0.62, height * 0.55, height * 0.16
    for y in range(height):
        row = []
        t = y / (height - 1)
        for x in range(width):
            if y > height * 0.7:
                wave = 0.5 + 0.5 * math.sin(x * 0.08 + y * 0.9)
                row.append((int(20 + 30 * wave), int(30 + 40 * wave), int(70 + 50 * wave)))
            elif math.hypot(x - sun_x, y - sun_y) < sun_r:
                row.append((255, 236, 140))
            else:
                row.append((int(60 + 190 * t), int(80 + 90 * t), int(160 - 100 * t)))
        rows.append(row)
    return rows


def main():
    os.makedirs(OUT, exist_ok=True)
    # 24-bit, a width whose rows need padding (3 * 301 is not a multiple of 4).
    bmp(os.path.join(OUT, "sunset.bmp"), 301, 201, 24, sunset(301, 201))

    # 8-bit with a palette of 16 colours in stripes; 300 is no tile size.
    palette = [(int(255 * (0.5 + 0.5 * math.cos(i * 0.39 + k))) for k in (0, 2.1, 4.2))
               for i in range(16)]
    rows = [[((x + y) // 12) % 16 for x in range(300)] for y in range(300)]
    bmp(os.path.join(OUT, "stripes.bmp"), 300, 300, 8, rows, palette)

    # 24-bit, taller than wide and larger than one tile: a checkerboard with
    # a red corner marking the top left, so a turned or flipped picture shows.
    w, h = 257, 520
    rows = []
    for y in range(h):
        row = []
        for x in range(w):
            if x < 32 and y < 32:
                row.append((220, 30, 30))
            elif (x // 16 + y // 16) % 2:
                row.append((235, 235, 235))
            else:
                row.append((40, 40, 48))
        rows.append(row)
    bmp(os.path.join(OUT, "checker.bmp"), w, h, 24, rows)


if __name__ == "__main__":
    main()
