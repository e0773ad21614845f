#!/usr/bin/env python3
"""Turns the screenshots the window test writes (24- or 32-bit BMP files) into
PNG files beside them, with the standard library only.

usage: scripts/bmp2png.py FILE.bmp...   (each FILE.bmp becomes FILE.png)"""
import struct
import sys
import zlib


def convert(path):
    data = open(path, "rb").read()
    if data[:2] != b"BM":
        raise ValueError(f"{path}: not a BMP file")
    offset = struct.unpack_from("<I", data, 10)[0]
    width, height, _, bits = struct.unpack_from("<iiHH", data, 18)
    if bits not in (24, 32):
        raise ValueError(f"{path}: {bits}-bit pixels, only 24 and 32 are read")
    step = bits // 8
    stride = (width * step + 3) & ~3
    top_down = height < 0
    height = abs(height)
    rows = []
    for y in range(height):
        src = y if top_down else height - 1 - y
        row = data[offset + src * stride: offset + src * stride + width * step]
        rgb = bytearray(width * 3)
        rgb[0::3] = row[2::step]
        rgb[1::3] = row[1::step]
        rgb[2::3] = row[0::step]
        rows.append(b"\0" + bytes(rgb))

    def chunk(kind, body):
        return struct.pack(">I", len(body)) + kind + body + struct.pack(">I", zlib.crc32(kind + body) & 0xFFFFFFFF)

    png = b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0))
    png += chunk(b"IDAT", zlib.compress(b"".join(rows), 9)) + chunk(b"IEND", b"")
    out = path[:-4] + ".png" if path.lower().endswith(".bmp") else path + ".png"
    open(out, "wb").write(png)
    return out


if __name__ == "__main__":
    if len(sys.argv) < 2 or sys.argv[1] in ("-h", "--help"):
        print(__doc__)
        sys.exit(0 if len(sys.argv) > 1 else 2)
    status = 0
    for name in sys.argv[1:]:
        try:
            convert(name)
        except (OSError, ValueError) as e:
            print(f"bmp2png: {e}", file=sys.stderr)
            status = 1
    sys.exit(status)
