"""Code that the linker dropped: debug information has it from address 0 on, where no function symbol has its size."""

import functools
import subprocess

TIME_LIMIT_S = 60


@functools.lru_cache(maxsize=4)
def _sizes_at_zero(path):
    text = subprocess.run(["readelf", "--symbols", "--wide", path], capture_output=True, text=True, errors="replace",
                          timeout=TIME_LIMIT_S, check=True).stdout
    fields = (line.split() for line in text.splitlines())
    return {int(row[2], 0) for row in fields
            if len(row) > 6 and row[3] == "FUNC" and row[6] != "UND" and int(row[1], 16) <= 1}


def is_dropped(path, low, high):
    return low == 0 and high not in _sizes_at_zero(path)
