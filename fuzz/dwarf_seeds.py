#!/usr/bin/env python3
"""Writes the seeds of line_fuzz, location_fuzz and frame_fuzz into directories of those names: the sections of the
program files of the corpus, and each location expression that stands alone there. For elf_fuzz and program_fuzz it
writes files with compressed sections, which go beside the program files themselves."""
import pathlib
import re
import struct
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
MAX_LISTS = 8  # of one file


def sections(path):
    """Bytes by name, and whether the file is big endian."""
    data = path.read_bytes()
    order = ">" if data[5] == 2 else "<"
    offset, = struct.unpack_from(order + "I", data, 32)
    size, count, names = struct.unpack_from(order + "HHH", data, 46)
    headers = [struct.unpack_from(order + "10I", data, offset + i * size) for i in range(count)]
    text = data[headers[names][4]:headers[names][4] + headers[names][5]]
    named = {text[h[0]:text.index(b"\0", h[0])].decode(): data[h[4]:h[4] + h[5]] for h in headers}
    return named, order == ">"


def line_seed(found, big):
    texts = (found.get(".debug_line_str") or found.get(".debug_str", b""))[:0xFFFF]
    return struct.pack("<BH", big, len(texts)) + texts + found[".debug_line"]


def lists(found, big):
    """Location and range lists from evenly spread offsets on, for their readers of old and new versions."""
    for version, names in ((4, (".debug_loc", ".debug_ranges")), (5, (".debug_loclists", ".debug_rnglists"))):
        for section in filter(None, map(found.get, names)):
            step = max(4, len(section) // MAX_LISTS)
            for start in range(12 if version == 5 else 0, len(section), step):
                yield struct.pack("<BBI", big, version, 0x8000) + section[start:start + 256]


def expressions(path, big):
    text = subprocess.run(["readelf", "--debug-dump=info", path], capture_output=True, text=True, errors="replace").stdout
    found = set(re.findall(r"(?:byte block|exprloc): ([0-9a-f ]+?)\s*\(DW_OP", text))
    for block in sorted(found):
        yield struct.pack("<BBI", big, 0, 0) + bytes(int(byte, 16) for byte in block.split())


def write_compressed(path, out):
    for method in ("zlib", "zlib-gnu", "zstd"):
        target = out / f"{path.stem}_{method}.elf"
        subprocess.run(["arm-none-eabi-objcopy", f"--compress-debug-sections={method}", path, target], check=True)


def main():
    if len(sys.argv) != 2:
        sys.exit("usage: dwarf_seeds.py DIRECTORY")
    out = pathlib.Path(sys.argv[1])
    for path in sorted((ROOT / "tests/corpus/data").glob("*.elf")) + sorted((ROOT / "tests/elf/data").glob("*.elf")):
        found, big = sections(path)
        seeds = [("location", seed) for seed in (*lists(found, big), *expressions(path, big))]
        seeds += [("line", line_seed(found, big))] if ".debug_line" in found else []
        seeds += [("frame", bytes([big | flag]) + found[name])
                  for name, flag in ((".debug_frame", 0), (".eh_frame", 2)) if found.get(name)]
        for number, (target, seed) in enumerate(seeds):
            folder = out / f"{target}_fuzz"
            folder.mkdir(parents=True, exist_ok=True)
            (folder / f"{path.parent.parent.name}_{path.stem}_{number}").write_bytes(seed)
    folder = out / "compressed"
    folder.mkdir(parents=True, exist_ok=True)
    for path in sorted((ROOT / "tests/elf/data").glob("*.elf")):
        write_compressed(path, folder)


main()
