#!/usr/bin/env python3
"""Writes the photo frame's pictures in data/: hairline.bmp and flower.bmp.

The frame maps a texture onto its band so that the band's outer edge takes
the texture's edge and its inner edge (the picture's edge) lies a quarter of
the way in; the middle half stays under the picture. Both pictures are
therefore drawn as a square ring, and a pattern that runs around the ring
meets itself at a mitre in each corner, as the moulding of a real frame does.

hairline.bmp  128 x 128, 8-bit gray (the viewer reads the indices as gray
              levels and skips the palette). It is the colour of the plain
              lit frame and the height map of the bump-mapped one, so it is
              drawn as heights: an outer and an inner bead, a fine groove
              inside each, and between them a field of brushed hairlines,
              rings of slightly different height. Steps between neighbours
              are kept large enough that the slopes show under a light
              straight in front of the frame.
flower.bmp    256 x 256, 24-bit: a garland of five-petalled flowers on a
              wavy vine, a large rosette in each corner.

Both have power-of-two sides, which the frame needs: it loads them without
any resizing. Run from anywhere, with no arguments:
    python3 tools/make_frame_data.py
"""
import math
import os
import random

from bmpwrite import bmp

HERE = os.path.dirname(os.path.abspath(__file__))
OUT = os.path.join(os.path.dirname(HERE), "data")




def ring_distance(x, y, size):
    """Texels from pixel (x, y) to the nearest edge of a size x size square."""
    return min(x, y, size - 1 - x, size - 1 - y)


# ---------------------------------------------------------------- hairline

# Height at each distance from the outer edge, 0 to 31 being the band.
BEAD = [150, 215, 245, 255, 245, 215, 150]


def hairline_profile():
    rng = random.Random(1207)
    profile = [60] + BEAD + [70, 150]          # 0: outer edge, 8: groove
    for _ in range(11):                        # 10-20: the brushed field
        profile.append(200 + rng.randint(-30, 30))
    profile += [150, 70] + BEAD + [90, 40]     # 22: groove, 23-29: inner bead
    profile += [30] * (64 - len(profile))      # under the picture
    return profile


def hairline():
    size = 128
    profile = hairline_profile()
    return [[profile[ring_distance(x, y, size)] for x in range(size)] for y in range(size)]


# ------------------------------------------------------------------ flower

GROUND = (236, 222, 190)
VINE = (70, 120, 55)
LEAF = (95, 150, 70)
PETAL = (214, 72, 96)
PETAL_EDGE = (150, 30, 60)
HEART = (250, 196, 60)
RULE = (150, 110, 60)


def mix(a, b, t):
    return tuple(a[i] + (b[i] - a[i]) * t for i in range(3))


def flower_colour(dx, dy, radius, turn):
    """The colour of a flower of `radius` at offset (dx, dy), or None."""
    r = math.hypot(dx, dy) / radius
    if r > 1.0:
        return None
    if r < 0.28:
        return mix(HEART, PETAL_EDGE, max(0.0, r - 0.2) / 0.08 * 0.5)
    angle = math.atan2(dy, dx) + turn
    edge = 0.45 + 0.55 * abs(math.cos(2.5 * angle))
    if r > edge:
        return None
    return mix(PETAL, PETAL_EDGE, (r / edge) ** 3)


def along_and_across(x, y, size):
    """Position along the ring's side (0 at a corner) and distance from the edge."""
    d = ring_distance(x, y, size)
    if d == y or d == size - 1 - y:
        return x, d
    return y, d


def flower_sample(x, y, size):
    band = size // 4
    half = band / 2
    corners = (half, size - half)
    # A rosette on each corner's mitre, flowers along each side.
    for cx in corners:
        for cy in corners:
            c = flower_colour(x - cx, y - cy, half * 0.85, 0.3)
            if c:
                return c
    u, d = along_and_across(x, y, size)
    if d >= band:
        return GROUND
    if d < 2 or band - 3 < d < band - 1:
        return RULE
    # Three flowers between the corners, the vine passing through their
    # hearts, a leaf on each crest and in each trough of it.
    step = (size - 2 * band) / 3
    amplitude = 0.28 * band
    for k in range(3):
        c = flower_colour(u - band - step * (k + 0.5), d - half, half * 0.55, k * 0.7)
        if c:
            return c
    wave = half + amplitude * math.sin((u - band) / step * 2 * math.pi)
    if abs(d - wave) < 1.2:
        return VINE
    for k in range(3):
        for phase, side in ((0.25, 1), (0.75, -1)):
            # Pointed at both ends: the half width falls off towards the tips.
            du = (u - band - step * (k + phase)) / 7.0
            dd = d - half - side * (amplitude + 3.0)
            if abs(du) < 1.0 and abs(dd) < 3.2 * (1.0 - du * du):
                return mix(LEAF, VINE, abs(dd) / 3.2)
    return GROUND


def flower():
    size = 256
    samples = 4  # per axis, for smooth edges
    rows = []
    for y in range(size):
        row = []
        for x in range(size):
            total = [0.0, 0.0, 0.0]
            for j in range(samples):
                for i in range(samples):
                    c = flower_sample(x + (i + 0.5) / samples - 0.5,
                                      y + (j + 0.5) / samples - 0.5, size)
                    for k in range(3):
                        total[k] += c[k]
            row.append(tuple(int(t / samples ** 2 + 0.5) for t in total))
        rows.append(row)
    return rows


def main():
    os.makedirs(OUT, exist_ok=True)
    grays = [(i, i, i) for i in range(256)]
    bmp(os.path.join(OUT, "hairline.bmp"), 128, 128, 8, hairline(), grays)
    bmp(os.path.join(OUT, "flower.bmp"), 256, 256, 24, flower())


if __name__ == "__main__":
    main()
