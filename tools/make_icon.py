#!/usr/bin/env python3
"""Draws the viewer's icon into desktop/icons/: a scalable SVG and PNGs of
16 to 256 pixels for the desktop's hicolor theme.

The icon is what the viewer shows: a landscape (the sky, sun and hills of
samples/hills.jpg) in its photo frame, a wooden band lit from the upper
left with the hairline's bead and groove, the whole turned a little, as
the viewer turns a picture freely. Below it lies a soft shadow.

One list of shapes makes both forms: the SVG writes each shape as an
element, and the PNGs are rasterized here from the same shapes, sampled
several times per pixel, so that no outside renderer is needed and the
small sizes match the large. Coordinates are those of a 256 x 256 canvas,
y pointing down, with the frame's centre at the origin before the turn.

Run from anywhere, with no arguments:
    python3 tools/make_icon.py
"""
import math
import os

from pngwrite import png

HERE = os.path.dirname(os.path.abspath(__file__))
OUT = os.path.join(os.path.dirname(HERE), "desktop", "icons")

SIZES = (16, 22, 24, 32, 48, 64, 128, 256)
CANVAS = 256
TURN = -8.0  # degrees, counter-clockwise on the screen

# The frame's outer edge, its band and the picture inside it.
HALF_W, HALF_H = 106.0, 80.0
BAND = 20.0
PIC_W, PIC_H = HALF_W - BAND, HALF_H - BAND  # half sizes

# The band's profile from its outer edge inwards, as the hairline picture
# of the frame draws it: an edge, a bead, a flat, and a groove at the
# picture. Each step is (distance where it ends, brightness).
PROFILE = ((2.0, 0.62), (6.0, 0.92), (10.0, 1.28), (17.0, 0.96), (20.0, 0.58))
WOOD = (156, 104, 42)
# The light comes from the upper left.
SIDE_LIGHT = {"top": 1.16, "left": 1.04, "right": 0.80, "bottom": 0.68}

SHADOW_OFFSET = (4.0, 6.0)
SHADOW_BLUR = 3.5  # standard deviation
SHADOW_ALPHA = 0.38

SKY_TOP, SKY_LOW = (44, 82, 222), (190, 148, 196)
SUN = (40.0, -20.0, 13.0)  # centre and radius
SUN_COLOUR, GLOW_COLOUR = (255, 238, 172), (255, 248, 226)
GLOW_RADIUS, GLOW_ALPHA = 25.0, 0.6
BACK_HILLS, FRONT_HILLS, FRONT_HILLS_LOW = (94, 146, 120), (62, 130, 50), (34, 86, 30)
MEADOW = (28.0, PIC_H + 8.0)  # where the front hills' gradient starts and ends


def back_hill(x):
    return 6.0 + 10.0 * math.sin(x * 0.045 + 1.0) + 4.0 * math.sin(x * 0.11)


def front_hill(x):
    return 28.0 + 7.0 * math.sin(x * 0.06 - 0.5) + 3.0 * math.sin(x * 0.17 + 0.3)


def mix(a, b, t):
    t = min(max(t, 0.0), 1.0)
    return tuple(a[i] + (b[i] - a[i]) * t for i in range(3))


def shade(colour, k):
    return tuple(min(255.0, c * k) for c in colour)


# ------------------------------------------------------------------ shapes

def band_side(x, y):
    """The side of the band that (x, y) lies on, split at the mitres, and its
    distance from the outer edge."""
    d = {"top": y + HALF_H, "bottom": HALF_H - y, "left": x + HALF_W, "right": HALF_W - x}
    side = min(d, key=d.get)
    return side, d[side]


def frame_colour(x, y):
    if abs(x) > HALF_W or abs(y) > HALF_H or (abs(x) < PIC_W and abs(y) < PIC_H):
        return None
    side, d = band_side(x, y)
    for end, k in PROFILE:
        if d < end:
            return shade(WOOD, k * SIDE_LIGHT[side]) + (1.0,)
    return shade(WOOD, PROFILE[-1][1] * SIDE_LIGHT[side]) + (1.0,)


def picture_colour(x, y):
    if abs(x) >= PIC_W or abs(y) >= PIC_H:
        return None
    if y > front_hill(x):
        return mix(FRONT_HILLS, FRONT_HILLS_LOW, (y - MEADOW[0]) / (MEADOW[1] - MEADOW[0])) + (1.0,)
    if y > back_hill(x):
        return BACK_HILLS + (1.0,)
    sx, sy, sr = SUN
    r = math.hypot(x - sx, y - sy)
    if r < sr:
        return SUN_COLOUR + (1.0,)
    sky = mix(SKY_TOP, SKY_LOW, (y + PIC_H) / (PIC_H + 20.0))
    if r < GLOW_RADIUS:
        return mix(sky, GLOW_COLOUR, GLOW_ALPHA * (GLOW_RADIUS - r) / (GLOW_RADIUS - sr)) + (1.0,)
    return sky + (1.0,)


def shadow_alpha(x, y):
    """A blurred rectangle: the Gaussian's integral over the frame's extent."""
    def along(v, half, offset):
        s = SHADOW_BLUR * math.sqrt(2.0)
        return 0.5 * (math.erf((v - offset + half) / s) - math.erf((v - offset - half) / s))
    return SHADOW_ALPHA * along(x, HALF_W, SHADOW_OFFSET[0]) * along(y, HALF_H, SHADOW_OFFSET[1])


def sample(x, y):
    """Premultiplied (r, g, b, a) at canvas point (x, y)."""
    a = math.radians(-TURN)
    cx, cy = x - CANVAS / 2, y - CANVAS / 2
    lx = cx * math.cos(a) - cy * math.sin(a)
    ly = cx * math.sin(a) + cy * math.cos(a)
    c = frame_colour(lx, ly) or picture_colour(lx, ly)
    if c:
        return c
    alpha = shadow_alpha(lx, ly)
    return (0.0, 0.0, 0.0, alpha)


def raster(size):
    n = max(4, 64 // size)  # samples per axis
    scale = CANVAS / size
    rows = []
    for py in range(size):
        row = []
        for px in range(size):
            total = [0.0] * 4
            for j in range(n):
                for i in range(n):
                    r, g, b, a = sample((px + (i + 0.5) / n) * scale, (py + (j + 0.5) / n) * scale)
                    total[0] += r * a
                    total[1] += g * a
                    total[2] += b * a
                    total[3] += a
            alpha = total[3] / (n * n)
            if alpha <= 0.0:
                row.append((0, 0, 0, 0))
                continue
            row.append(tuple(int(min(255.0, t / total[3]) + 0.5) for t in total[:3])
                       + (int(alpha * 255.0 + 0.5),))
        rows.append(row)
    return rows


# --------------------------------------------------------------------- SVG

def hexcolour(c):
    return "#%02x%02x%02x" % tuple(int(v + 0.5) for v in c)


def points(pts):
    return " ".join("%.2f,%.2f" % p for p in pts)


def band_polygons():
    """The band as mitred trapezoids, one for each side and step of the profile."""
    start = 0.0
    for end, k in PROFILE:
        ox, oy, ix, iy = HALF_W - start, HALF_H - start, HALF_W - end, HALF_H - end
        sides = {
            "top": [(-ox, -oy), (ox, -oy), (ix, -iy), (-ix, -iy)],
            "bottom": [(-ox, oy), (ox, oy), (ix, iy), (-ix, iy)],
            "left": [(-ox, -oy), (-ix, -iy), (-ix, iy), (-ox, oy)],
            "right": [(ox, -oy), (ix, -iy), (ix, iy), (ox, oy)],
        }
        for side, pts in sides.items():
            yield pts, shade(WOOD, k * SIDE_LIGHT[side])
        start = end


def hill_path(f):
    xs = [-PIC_W + i * 2.0 for i in range(int(2 * PIC_W / 2.0) + 1)]
    pts = [(-PIC_W, PIC_H)] + [(x, f(x)) for x in xs] + [(PIC_W, PIC_H)]
    return "M " + " L ".join("%.2f,%.2f" % p for p in pts) + " Z"


def svg():
    sx, sy, sr = SUN
    out = [
        '<?xml version="1.0" encoding="UTF-8"?>',
        '<!-- Drawn by tools/make_icon.py; edit that and run it again. -->',
        '<svg xmlns="http://www.w3.org/2000/svg" width="%d" height="%d" viewBox="0 0 %d %d">'
        % (CANVAS, CANVAS, CANVAS, CANVAS),
        '<defs>',
        '<filter id="blur" x="-10%%" y="-10%%" width="120%%" height="120%%">'
        '<feGaussianBlur stdDeviation="%.2f"/></filter>' % SHADOW_BLUR,
        '<clipPath id="picture"><rect x="%.2f" y="%.2f" width="%.2f" height="%.2f"/></clipPath>'
        % (-PIC_W, -PIC_H, 2 * PIC_W, 2 * PIC_H),
        '<linearGradient id="sky" gradientUnits="userSpaceOnUse" x1="0" y1="%.2f" x2="0" y2="20">'
        '<stop offset="0" stop-color="%s"/><stop offset="1" stop-color="%s"/></linearGradient>'
        % (-PIC_H, hexcolour(SKY_TOP), hexcolour(SKY_LOW)),
        '<radialGradient id="glow" gradientUnits="userSpaceOnUse" cx="%.2f" cy="%.2f" r="%.2f">'
        '<stop offset="%.4f" stop-color="%s" stop-opacity="%.2f"/>'
        '<stop offset="1" stop-color="%s" stop-opacity="0"/></radialGradient>'
        % (sx, sy, GLOW_RADIUS, sr / GLOW_RADIUS, hexcolour(GLOW_COLOUR), GLOW_ALPHA,
           hexcolour(GLOW_COLOUR)),
        '<linearGradient id="meadow" gradientUnits="userSpaceOnUse" x1="0" y1="%.2f" x2="0" y2="%.2f">'
        '<stop offset="0" stop-color="%s"/><stop offset="1" stop-color="%s"/></linearGradient>'
        % (MEADOW + (hexcolour(FRONT_HILLS), hexcolour(FRONT_HILLS_LOW))),
        '</defs>',
        '<g transform="translate(%d %d) rotate(%.1f)">' % (CANVAS // 2, CANVAS // 2, TURN),
        '<rect x="%.2f" y="%.2f" width="%.2f" height="%.2f" fill="#000" fill-opacity="%.2f" '
        'filter="url(#blur)"/>'
        % (-HALF_W + SHADOW_OFFSET[0], -HALF_H + SHADOW_OFFSET[1], 2 * HALF_W, 2 * HALF_H,
           SHADOW_ALPHA),
        '<g clip-path="url(#picture)">',
        '<rect x="%.2f" y="%.2f" width="%.2f" height="%.2f" fill="url(#sky)"/>'
        % (-PIC_W, -PIC_H, 2 * PIC_W, 2 * PIC_H),
        '<circle cx="%.2f" cy="%.2f" r="%.2f" fill="url(#glow)"/>' % (sx, sy, GLOW_RADIUS),
        '<circle cx="%.2f" cy="%.2f" r="%.2f" fill="%s"/>' % (sx, sy, sr, hexcolour(SUN_COLOUR)),
        '<path d="%s" fill="%s"/>' % (hill_path(back_hill), hexcolour(BACK_HILLS)),
        '<path d="%s" fill="url(#meadow)"/>' % hill_path(front_hill),
        '</g>',
    ]
    for pts, colour in band_polygons():
        out.append('<polygon points="%s" fill="%s"/>' % (points(pts), hexcolour(colour)))
    out += ['</g>', '</svg>', '']
    return "\n".join(out)


def main():
    os.makedirs(os.path.join(OUT, "scalable"), exist_ok=True)
    with open(os.path.join(OUT, "scalable", "zanoview.svg"), "w") as f:
        f.write(svg())
    for size in SIZES:
        folder = os.path.join(OUT, "%dx%d" % (size, size))
        os.makedirs(folder, exist_ok=True)
        png(os.path.join(folder, "zanoview.png"), size, size, raster(size))


if __name__ == "__main__":
    main()
