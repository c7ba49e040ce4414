#!/usr/bin/env python3
"""Writes busy1.cur to busy4.cur beside itself: an hourglass in four turns of 45 degrees."""
import math
import pathlib
import struct

SIZE = 32


def inside(x, y, edge):
    """Whether a point, counted from the centre, lies within the hourglass, drawn in by edge."""
    if 11 <= abs(y) <= 14:  # top and bottom plate
        return abs(x) <= 9 - edge and 11 + edge <= abs(y) <= 14 - edge
    return abs(y) < 11 and abs(x) <= 1.5 + 0.55 * abs(y) - 1.3 * edge


def sand(x, y):
    """Half of the upper glass, and a heap in the lower one."""
    return inside(x, y, 1) and (-7 <= y <= 0 or 0 < y <= 10 and abs(x) <= (y - 5) * 1.2)


def cursor(angle):
    cos, sin = math.cos(angle), math.sin(angle)
    transparent, white = bytearray(), bytearray()
    for row in reversed(range(SIZE)):  # bitmaps start at the bottom
        bits = [0, 0]
        for column in range(SIZE):
            right, down = column - 15.5, row - 15.5
            x, y = right * cos + down * sin, down * cos - right * sin
            outside = not inside(x, y, 0)
            bits[0] = bits[0] << 1 | outside
            bits[1] = bits[1] << 1 | (not outside and inside(x, y, 1) and not sand(x, y))
        transparent += struct.pack(">I", bits[0])
        white += struct.pack(">I", bits[1])
    masks = bytes(white + transparent)
    image = struct.pack("<IiiHHIIiiII", 40, SIZE, 2 * SIZE, 1, 1, 0, len(masks), 0, 0, 2, 0)
    image += struct.pack("<II", 0, 0xFFFFFF) + masks
    entry = struct.pack("<BBBBHHII", SIZE, SIZE, 2, 0, SIZE // 2, SIZE // 2, len(image), 6 + 16)
    return struct.pack("<HHH", 0, 2, 1) + entry + image


for turn in range(4):
    path = pathlib.Path(__file__).with_name(f"busy{turn + 1}.cur")
    path.write_bytes(cursor(math.radians(45 * turn)))
