#!/usr/bin/env python3
"""Writes small BMP, ICO and CUR files in every layout the readers decode, form-file seeds (text
and companion joined by the "--frx--" line) and text files in each encoding, into
tests/data/fuzzseeds/<target>/. The compressor and list-blob seeds come from make_fuzz_seeds."""
import os
import struct
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
OUT = os.path.join(ROOT, "tests", "data", "fuzzseeds")


def stride(width, bits):
    return ((width * bits + 31) // 32) * 4


def pack_rows(width, height, bits, pixel):
    """Packed rows, bottom-up, pixel(x, y) giving the index or value of each pixel."""
    rows = []
    for y in range(height - 1, -1, -1):
        if bits >= 8:
            size = bits // 8
            row = b"".join(pixel(x, y).to_bytes(size, "little") for x in range(width))
        else:
            acc, nbits, row = 0, 0, bytearray()
            for x in range(width):
                acc = (acc << bits) | pixel(x, y)
                nbits += bits
                if nbits == 8:
                    row.append(acc)
                    acc, nbits = 0, 0
            if nbits:
                row.append(acc << (8 - nbits))
            row = bytes(row)
        rows.append(row.ljust(stride(width, bits), b"\0"))
    return b"".join(rows)


def info_header(width, height, bits, compression=0, size_image=0, colors=0, header_size=40):
    h = struct.pack("<IiiHHIIiiII", header_size, width, height, 1, bits, compression, size_image, 2835, 2835,
                    colors, 0)
    return h.ljust(header_size, b"\0") if header_size > 40 else h


def palette(n):
    return b"".join(struct.pack("<BBBB", (i * 37) & 255, (i * 91) & 255, (i * 53) & 255, 0) for i in range(n))


def bmp_file(dib, tables_size):
    return struct.pack("<2sIHHI", b"BM", 14 + len(dib), 0, 0, 14 + tables_size) + dib


def bmps():
    w, h = 7, 5
    out = {}
    for bits in (1, 4, 8):
        n = 1 << bits
        pal = palette(n)
        px = pack_rows(w, h, bits, lambda x, y: (x + y) % n)
        out[f"pal{bits}.bmp"] = bmp_file(info_header(w, h, bits, colors=n) + pal + px, 40 + len(pal))
    out["rgb24.bmp"] = bmp_file(info_header(w, h, 24) + pack_rows(w, h, 24, lambda x, y: x * 0x102030 + y), 40)
    px32 = pack_rows(w, h, 32, lambda x, y: ((x * 40) << 24) | (y * 0x303030))
    out["argb32.bmp"] = bmp_file(info_header(w, h, 32) + px32, 40)
    # Top-down rows.
    out["topdown24.bmp"] = bmp_file(info_header(w, -h, 24) + pack_rows(w, h, 24, lambda x, y: x * 0x1020), 40)
    # 16 bits 5-6-5 through bit fields, and 32 bits with an alpha mask in a v5 header.
    masks = struct.pack("<III", 0xF800, 0x07E0, 0x001F)
    out["bf565.bmp"] = bmp_file(info_header(w, h, 16, 3) + masks + pack_rows(w, h, 16, lambda x, y: x * 0x841 + y),
                                52)
    v5 = bytearray(info_header(w, h, 32, 3, header_size=124))
    v5[40:56] = struct.pack("<IIII", 0x00FF0000, 0x0000FF00, 0x000000FF, 0xFF000000)
    out["v5alpha.bmp"] = bmp_file(bytes(v5) + px32, 124)
    # The 12-byte core header with a 3-byte palette.
    core = struct.pack("<IHHHH", 12, w, h, 1, 8)
    cpal = b"".join(struct.pack("<BBB", i, 255 - i, i // 2) for i in range(256))
    out["core8.bmp"] = bmp_file(core + cpal + pack_rows(w, h, 8, lambda x, y: x * 30 + y), 12 + len(cpal))
    # RLE8: runs, an absolute run, a delta, end of line, end of bitmap.
    rle8 = bytes([3, 1, 0, 3, 2, 3, 4, 0, 1, 5, 0, 0, 0, 2, 1, 1, 2, 9, 0, 0, 7, 4, 0, 1])
    pal8 = palette(16)
    out["rle8.bmp"] = bmp_file(info_header(w, h, 8, 1, len(rle8), 16) + pal8 + rle8, 40 + len(pal8))
    rle4 = bytes([4, 0x12, 0, 3, 0x34, 0x50, 0, 0, 7, 0xAB, 0, 2, 1, 1, 3, 0x11, 0, 1])
    out["rle4.bmp"] = bmp_file(info_header(w, h, 4, 2, len(rle4), 16) + pal8 + rle4, 40 + len(pal8))
    return out


def icon_dib(w, h, bits, pixel, mask):
    n = (1 << bits) if bits <= 8 else 0
    head = info_header(w, h * 2, bits, colors=n)
    return head + palette(n) + pack_rows(w, h, bits, pixel) + pack_rows(w, h, 1, mask)


def ico_file(entries, kind=1):
    """entries: (width, height, bits, image bytes, field4, field6)"""
    head = struct.pack("<HHH", 0, kind, len(entries))
    offset = 6 + 16 * len(entries)
    directory, data = b"", b""
    for w, h, bits, image, f4, f6 in entries:
        directory += struct.pack("<BBBBHHII", w & 255, h & 255, 0, 0, f4, f6, len(image), offset + len(data))
        data += image
    return head + directory + data


def icos():
    out = {}
    d32 = icon_dib(8, 8, 32, lambda x, y: ((x * 32) << 24) | 0x40C080, lambda x, y: 0)
    d4 = icon_dib(6, 6, 4, lambda x, y: (x + y) % 16, lambda x, y: (x == y))
    d1 = icon_dib(5, 4, 1, lambda x, y: x & 1, lambda x, y: y & 1)
    d24 = icon_dib(4, 4, 24, lambda x, y: 0x112233 * (x + 1), lambda x, y: x > 2)
    out["one32.ico"] = ico_file([(8, 8, 32, d32, 1, 32)])
    out["mixed.ico"] = ico_file([(6, 6, 4, d4, 1, 4), (5, 4, 1, d1, 1, 1), (8, 8, 32, d32, 1, 32),
                                 (4, 4, 24, d24, 1, 24)])
    png_path = os.path.join(ROOT, "tests", "data", "pngsuite", "basn6a08.png")
    with open(png_path, "rb") as f:
        png = f.read()
    out["png.ico"] = ico_file([(32, 32, 32, png, 1, 32), (6, 6, 4, d4, 1, 4)])
    out["hotspot.cur"] = ico_file([(6, 6, 4, d4, 2, 3)], kind=2)
    return out


def forms():
    """Each form of the test data, with its companion after the split line."""
    out = {}
    for folder in (os.path.join(ROOT, "tests", "data", "forms"), os.path.join(ROOT, "tests", "data", "bad", "forms"),
                   os.path.join(ROOT, "tests", "data", "imagelist")):
        for name in sorted(os.listdir(folder)):
            stem, ext = os.path.splitext(name)
            if ext.lower() not in (".frm", ".ctl"):
                continue
            with open(os.path.join(folder, name), "rb") as f:
                text = f.read()
            companion = os.path.join(folder, stem + (".frx" if ext.lower() == ".frm" else ".ctx"))
            if os.path.exists(companion):
                with open(companion, "rb") as f:
                    text += b"\n--frx--\n" + f.read()
            bad = os.sep + "bad" + os.sep in folder and not stem.startswith("bad_")
            out[("bad_" if bad else "") + stem + ".form"] = text
    return out


def strings():
    text = "Ação, preço: R$ 1.234,56 \u20ac \U0001F600\r\nsegunda linha"
    return {"ansi.txt": text[:24].encode("cp1252"), "utf8bom.txt": b"\xef\xbb\xbf" + text.encode("utf-8"),
            "utf8.txt": text.encode("utf-8"), "utf16le.txt": b"\xff\xfe" + text.encode("utf-16-le"),
            "utf16be.txt": b"\xfe\xff" + text.encode("utf-16-be"), "odd.txt": b"\xff\xfe\x41"}


def write(target, files):
    folder = os.path.join(OUT, target)
    os.makedirs(folder, exist_ok=True)
    for name, data in files.items():
        with open(os.path.join(folder, name), "wb") as f:
            f.write(data)


def main():
    write("bmp", bmps())
    write("ico", icos())
    write("formfile", forms())
    write("stringfile", strings())
    return 0


if __name__ == "__main__":
    sys.exit(main())
