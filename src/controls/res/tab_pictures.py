#!/usr/bin/env python3
"""Draws the tab bar's pictures as 24-bit BMP files next to this script.

The bar is a light strip across the top of the settings window's blue
(0x00B36A36): tabs at rest blend into the strip, a hovered tab lifts as a
white rounded tab with a blue line at its foot, and the selected tab is a
rounded tab in the window's own blue, so that it runs into the page below
and carries the white caption. Run it again after changing a colour and
commit the pictures.

Sizes (pixels): tab normal 2 x 35, hover 64 x 36, pressed and selected
65 x 36, menu button 22 x 36 each, divider 3 x 25, background strip 2 x 35.
"""

import os
import struct

HERE = os.path.dirname(os.path.abspath(__file__))

WINDOW_BLUE = (0x36, 0x6A, 0xB3)  # 0x00B36A36 as red, green, blue
CAPTION = (0x00, 0x00, 0x40)  # the resting caption colour 0x00400000
WHITE = (255, 255, 255)

STRIP_TOP = (250, 252, 255)
STRIP_BOTTOM = (214, 226, 243)
STRIP_EDGE = (172, 192, 224)  # the strip's last row, where the page begins

HOVER_TOP = (255, 255, 255)
HOVER_BOTTOM = (236, 243, 253)
HOVER_BORDER = (150, 178, 220)
HOVER_ACCENT = (86, 134, 204)

DOWN_TOP = (86, 140, 210)
DOWN_BORDER = (36, 78, 142)
DOWN_SHINE = (122, 166, 226)

DIVIDER = (140, 166, 206)

SAMPLES = 4  # per axis, for smooth edges


def mix(a, b, t):
    return tuple(round(x + (y - x) * t) for x, y in zip(a, b))


def strip_colour(y, height):
    """The background strip at row y of a picture `height` rows tall."""
    if y >= height - 1:
        return STRIP_EDGE
    return mix(STRIP_TOP, STRIP_BOTTOM, y / (height - 2))


def in_round_top(x, y, left, top, right, radius):
    """Inside a rectangle from left to right and from top down, open at the
    bottom, whose top corners are rounded."""
    if x < left or x > right or y < top:
        return False
    if y >= top + radius:
        return True
    if x < left + radius:
        cx = left + radius
    elif x > right - radius:
        cx = right - radius
    else:
        return True
    return (x - cx) ** 2 + (y - top - radius) ** 2 <= radius**2


def coverage(inside, px, py):
    """The share of pixel (px, py) that `inside` covers."""
    hits = 0
    for sy in range(SAMPLES):
        for sx in range(SAMPLES):
            if inside(px + (sx + 0.5) / SAMPLES, py + (sy + 0.5) / SAMPLES):
                hits += 1
    return hits / (SAMPLES * SAMPLES)


def tab_shape(width, height, inset, top, radius, fill_top, fill_bottom, border, shine=None, accent=None):
    """A rounded tab standing on the bottom of a strip picture."""
    left, right = inset, width - inset

    def outer(x, y):
        return in_round_top(x, y, left, top, right, radius)

    def inner(x, y):
        return in_round_top(x, y, left + 1, top + 1, right - 1, radius - 1)

    rows = []
    for y in range(height):
        row = []
        for x in range(width):
            colour = strip_colour(y, height)
            colour = mix(colour, border, coverage(outer, x, y))
            t = (y - top) / max(1, height - 1 - top)
            fill = mix(fill_top, fill_bottom, min(max(t, 0.0), 1.0))
            if shine is not None and y == top + 1:
                fill = shine
            if accent is not None and y >= height - 2:
                fill = accent
            colour = mix(colour, fill, coverage(inner, x, y))
            row.append(colour)
        rows.append(row)
    return rows


def chevron(rows, colour):
    """A small downward chevron in the middle of a menu button."""
    height, width = len(rows), len(rows[0])
    cx, cy = width / 2, height / 2 + 1

    def inside(x, y):
        # Two strokes, 1.6 pixels thick, meeting at the bottom point.
        dx, dy = abs(x - cx), y - (cy - 2.5)
        if dy < -0.8 or dy > 4.2 or dx > 4.6:
            return False
        return abs(dy - (4 - dx)) * 0.707 <= 0.8

    for y in range(height):
        for x in range(width):
            c = coverage(inside, x, y)
            if c:
                rows[y][x] = mix(rows[y][x], colour, c)
    return rows


def strip(width, height):
    return [[strip_colour(y, height) for _ in range(width)] for y in range(height)]


def divider():
    """A thin line that fades out at both ends, on the strip's colours at
    the height where the divider sits (7 pixels down a 35-pixel strip)."""
    rows = []
    for y in range(25):
        back = strip_colour(7 + y, 35)
        fade = min(1.0, (y + 1) / 6, (25 - y) / 6)
        rows.append([back, mix(back, DIVIDER, fade), back])
    return rows


def write_bmp(name, rows):
    height, width = len(rows), len(rows[0])
    stride = (width * 3 + 3) & ~3
    pixels = bytearray()
    for row in reversed(rows):  # bottom-up
        line = bytearray()
        for r, g, b in row:
            line += bytes((b, g, r))
        line += bytes(stride - len(line))
        pixels += line
    header = struct.pack("<IiiHHIIiiII", 40, width, height, 1, 24, 0, len(pixels), 3780, 3780, 0, 0)
    with open(os.path.join(HERE, name), "wb") as out:
        out.write(b"BM" + struct.pack("<IHHI", 14 + len(header) + len(pixels), 0, 0, 14 + len(header)))
        out.write(header)
        out.write(pixels)


def main():
    write_bmp("tab_strip.bmp", strip(2, 35))
    write_bmp("tab_normal.bmp", strip(2, 35))
    write_bmp(
        "tab_over.bmp",
        tab_shape(64, 36, 2, 4, 5, HOVER_TOP, HOVER_BOTTOM, HOVER_BORDER, accent=HOVER_ACCENT),
    )
    write_bmp(
        "tab_down.bmp",
        tab_shape(65, 36, 1, 3, 6, DOWN_TOP, WINDOW_BLUE, DOWN_BORDER, shine=DOWN_SHINE),
    )
    write_bmp("tab_menu_normal.bmp", chevron(strip(22, 36), CAPTION))
    write_bmp(
        "tab_menu_over.bmp",
        chevron(tab_shape(22, 36, 1, 4, 5, HOVER_TOP, HOVER_BOTTOM, HOVER_BORDER, accent=HOVER_ACCENT), CAPTION),
    )
    write_bmp(
        "tab_menu_down.bmp",
        chevron(tab_shape(22, 36, 1, 3, 5, DOWN_TOP, WINDOW_BLUE, DOWN_BORDER, shine=DOWN_SHINE), WHITE),
    )
    write_bmp("tab_separator.bmp", divider())


if __name__ == "__main__":
    main()
