#!/usr/bin/env python3
"""Draws the badge pictures of Resources from the sheets in this folder.

Needs rsvg-convert (Debian: librsvg2-bin). Each element of a sheet whose id is the sheet's name and a number is one
picture. They are drawn at two pixels to a point, and say so, so that they are sharp at scales up to 2; half of that is
the very mean of four pixels.
"""

import pathlib
import re
import struct
import subprocess
import zlib

PIXELS_PER_POINT = 2
DOTS_PER_METER = round(72 * PIXELS_PER_POINT / 0.0254)

folder = pathlib.Path(__file__).resolve().parent


def chunk(kind, data):
    return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))


def with_resolution(png):
    header_end = 8 + 25  # the signature and IHDR, behind which the resolution may stand
    resolution = chunk(b"pHYs", struct.pack(">IIB", DOTS_PER_METER, DOTS_PER_METER, 1))
    return png[:header_end] + resolution + png[header_end:]


for sheet in sorted(folder.glob("*.svg")):
    pictures = re.findall(rf'id="({sheet.stem}\d+)".*\n\s*<rect width="(\d+)" height="(\d+)"', sheet.read_text())
    for name, width, height in pictures:
        size = [f"--width={int(width) * PIXELS_PER_POINT}", f"--height={int(height) * PIXELS_PER_POINT}"]
        drawn = subprocess.run(["rsvg-convert", f"--export-id={name}", *size, sheet], check=True, capture_output=True)
        (folder.parent / "Resources" / f"{name}.png").write_bytes(with_resolution(drawn.stdout))
