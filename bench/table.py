#!/usr/bin/env python3
"""Runs the benchmark programs and prints one table: each comparison with our figure, the
reference's figure and their ratio (ours over reference: below 1 means ours is faster).

    bench/table.py BIN_DIR OUT_DIR [benchmark arguments...]
    bench/table.py --from-json OUT_DIR

Every program's full output is kept in OUT_DIR/<program>.json (and its console text in
OUT_DIR/<program>.txt); --from-json prints the table again from those files without running
anything. Figures are CPU time, the median where repetitions were asked for.
"""
import glob
import json
import os
import subprocess
import sys

# (section, comparison, our benchmark, reference benchmark, reference's name); a reference of
# None has no counterpart and shows our figure alone. Names are run names as the programs
# print them, arguments included.
ROWS = [
    ("PNG decode 2048 x 2048", "RGBA 8, zlib", "BM_PngOurs/rgba8_zlib", "BM_PngLibpng/rgba8", "libpng"),
    ("PNG decode 2048 x 2048", "RGBA 8, zlib", "BM_PngOurs/rgba8_zlib", "BM_PngSpng/rgba8", "libspng"),
    ("PNG decode 2048 x 2048", "RGBA 8, built-in inflate", "BM_PngOurs/rgba8_builtin", "BM_PngLibpng/rgba8", "libpng"),
    ("PNG decode 2048 x 2048", "RGBA 8, built-in inflate", "BM_PngOurs/rgba8_builtin", "BM_PngSpng/rgba8", "libspng"),
    ("PNG decode 2048 x 2048", "palette 8, zlib", "BM_PngOurs/palette8_zlib", "BM_PngLibpng/palette8", "libpng"),
    ("PNG decode 2048 x 2048", "palette 8, zlib", "BM_PngOurs/palette8_zlib", "BM_PngSpng/palette8", "libspng"),
    ("PNG decode 2048 x 2048", "palette 8, built-in inflate", "BM_PngOurs/palette8_builtin", "BM_PngLibpng/palette8",
     "libpng"),
    ("PNG decode 2048 x 2048", "palette 8, built-in inflate", "BM_PngOurs/palette8_builtin", "BM_PngSpng/palette8",
     "libspng"),
    ("PNG decode 2048 x 2048", "grey 16, zlib", "BM_PngOurs/grey16_zlib", "BM_PngLibpng/grey16", "libpng"),
    ("PNG decode 2048 x 2048", "grey 16, zlib", "BM_PngOurs/grey16_zlib", "BM_PngSpng/grey16", "libspng"),
    ("PNG decode 2048 x 2048", "grey 16, built-in inflate", "BM_PngOurs/grey16_builtin", "BM_PngLibpng/grey16",
     "libpng"),
    ("PNG decode 2048 x 2048", "grey 16, built-in inflate", "BM_PngOurs/grey16_builtin", "BM_PngSpng/grey16",
     "libspng"),
    ("Rendering 1024 x 1024", "unscaled blend, platform AlphaBlend", "BM_Blend_Render/alphablend", "BM_Blend_pixman",
     "pixman"),
    ("Rendering 1024 x 1024", "unscaled blend, own engine", "BM_Blend_Render/own_engine", "BM_Blend_pixman", "pixman"),
    ("Rendering 1024 x 1024", "scale to 1536, nearest", "BM_Scale_Render/nearest", "BM_Scale_pixman/nearest",
     "pixman"),
    ("Rendering 1024 x 1024", "scale to 1536, bilinear", "BM_Scale_Render/bilinear", "BM_Scale_pixman/bilinear",
     "pixman"),
    ("Rendering 1024 x 1024", "rotate 30 degrees, nearest", "BM_Rotate_Render/nearest", "BM_Rotate_pixman/nearest",
     "pixman"),
    ("Rendering 1024 x 1024", "rotate 30 degrees, bilinear", "BM_Rotate_Render/bilinear",
     "BM_Rotate_pixman/bilinear", "pixman"),
    ("GIF LZW encode 1024 x 1024", "photo", "BM_GifLzwOurs/photo", "BM_GifLzwGiflib/photo", "giflib"),
    ("GIF LZW encode 1024 x 1024", "flat", "BM_GifLzwOurs/flat", "BM_GifLzwGiflib/flat", "giflib"),
    ("Image list, 1000 icons 32 x 32", "Huffman compress", "BM_HuffmanCompress1000Icons",
     "BM_ZlibHuffmanOnlyCompress1000Icons", "zlib Huffman-only"),
    ("Image list, 1000 icons 32 x 32", "Huffman decompress", "BM_HuffmanDecompress1000Icons",
     "BM_ZlibHuffmanOnlyDecompress1000Icons", "zlib inflate"),
    ("Image list, 1000 icons 32 x 32", "LIVL export", "BM_LivlExport1000Icons", "BM_ZlibHuffmanOnlyCompress1000Icons",
     "zlib Huffman-only"),
    ("Image list, 1000 icons 32 x 32", "LIVL import", "BM_LivlImport1000Icons", "BM_ZlibHuffmanOnlyDecompress1000Icons",
     "zlib inflate"),
    ("Grid", "AddItem, 1,000,000 rows x 10", "BM_AddItemMillionRows/1000000/iterations:3",
     "BM_AddItemMillionRows_reference/1000000/iterations:3", "vectors of strings"),
    ("Grid", "fill from SQLite, 100,000 rows x 5", "BM_FillFromSqlite/100000", "BM_FillFromSqlite_reference/100000",
     "SQLite C API to strings"),
    ("Grid", "repaint 640 x 480, 1,000 rows", "BM_FullRepaint/1000/0", "BM_FullRepaint_reference/1000/0",
     "the same texts drawn by hand"),
    ("Grid", "repaint 640 x 480, 1,000,000 rows, middle", "BM_FullRepaint/1000000/1",
     "BM_FullRepaint_reference/1000000/1", "the same texts drawn by hand"),
    ("Grid", "sort 1,000,000 rows, numeric column", "BM_GridSortNumeric/iterations:5",
     "BM_StdSortNumericKeys/iterations:5", "std::sort, precomputed keys"),
    ("Grid", "sort 1,000,000 rows, text column", "BM_GridSortText/iterations:5", "BM_StdSortTextKeys/iterations:5",
     "std::sort, precomputed keys"),
    ("Grid", "filter 1,000,000 rows, begins with", "BM_GridFilterBeginsWith/iterations:5",
     "BM_PlainLoopBeginsWithKeys/iterations:5", "loop over precomputed keys"),
]

UNIT_MS = {"ns": 1e-6, "us": 1e-3, "ms": 1.0, "s": 1e3}


def run(bin_dir, out_dir, extra):
    os.makedirs(out_dir, exist_ok=True)
    programs = sorted(p for p in glob.glob(os.path.join(bin_dir, "bench_*")) if os.access(p, os.X_OK))
    if not programs:
        sys.exit(f"table.py: no bench_* programs in {bin_dir}")
    for prog in programs:
        name = os.path.basename(prog)
        out = os.path.join(out_dir, name + ".json")
        print(f"table.py: running {name}", file=sys.stderr, flush=True)
        with open(os.path.join(out_dir, name + ".txt"), "w") as console:
            rc = subprocess.call([prog, f"--benchmark_out={out}", "--benchmark_out_format=json"] + extra,
                                 stdout=console, stderr=subprocess.STDOUT)
        if rc != 0:
            print(f"table.py: {name} ended with status {rc} (see {name}.txt)", file=sys.stderr)


def load(out_dir):
    """Run name -> CPU milliseconds: the median aggregate when present, else the mean of the runs."""
    runs, medians = {}, {}
    for path in sorted(glob.glob(os.path.join(out_dir, "bench_*.json"))):
        try:
            with open(path) as f:
                data = json.load(f)
        except (OSError, ValueError):
            continue
        for b in data.get("benchmarks", []):
            # Failed runs, and the complexity fits (BigO, RMS) that carry no time of their own.
            if b.get("error_occurred") or "cpu_time" not in b:
                continue
            name = b.get("run_name", b["name"])
            ms = b["cpu_time"] * UNIT_MS.get(b.get("time_unit", "ns"), 1e-6)
            if b.get("run_type") == "aggregate":
                if b.get("aggregate_name") == "median":
                    medians[name] = ms
            else:
                runs.setdefault(name, []).append(ms)
    figures = {name: sum(v) / len(v) for name, v in runs.items()}
    figures.update(medians)
    return figures


def fmt_ms(ms):
    if ms is None:
        return "-"
    if ms >= 100:
        return f"{ms:.0f} ms"
    if ms >= 10:
        return f"{ms:.1f} ms"
    if ms >= 1:
        return f"{ms:.2f} ms"
    return f"{ms * 1000:.0f} us"


def table(figures):
    lines = ["| Area | Comparison | Ours | Reference | Reference's figure | Ours / reference |",
             "| --- | --- | --- | --- | --- | --- |"]
    missing = []
    for section, label, ours_name, ref_name, ref_label in ROWS:
        ours = figures.get(ours_name)
        ref = figures.get(ref_name) if ref_name else None
        if ours is None or (ref_name and ref is None):
            missing.append(ours_name if ours is None else ref_name)
            continue
        ratio = f"{ours / ref:.2f}" if ref else "-"
        lines.append(f"| {section} | {label} | {fmt_ms(ours)} | {ref_label or 'none'} | {fmt_ms(ref)} | {ratio} |")
    return "\n".join(lines), missing


def main(argv):
    if len(argv) >= 2 and argv[0] == "--from-json":
        out_dir = argv[1]
    elif len(argv) >= 2:
        out_dir = argv[1]
        run(argv[0], out_dir, argv[2:])
    else:
        sys.exit(__doc__)
    text, missing = table(load(out_dir))
    print(text)
    if missing:
        print(f"\n(not measured in this run: {', '.join(sorted(set(missing)))})")


if __name__ == "__main__":
    main(sys.argv[1:])
