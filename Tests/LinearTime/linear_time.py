"""Counts the instructions that LinearTime spends on each input under callgrind, and fails where they grow faster than
the input: linear_time.py VALGRIND PROGRAM [BEGINNING OF A ROW'S NAME]

Between two sizes, what does not depend on the size cancels out. When the sizes double, so must these differences; a
quadratic operation would quadruple them. The limit leaves room for sorted dictionaries.
"""

import collections
import math
import os
import pathlib
import re
import subprocess
import sys
import tempfile

LIMIT = 2.2
SIZES = (1, 2, 4, 8)
# Growth below this many instructions from half the largest size to the largest is as good as none.
NOISE = 1000
# One way of copying for all sizes: what the C library changes to for longer ones counts differently.
TUNABLES = ":".join(f"glibc.cpu.x86_{name}_threshold=0x40000000"
                    for name in ("rep_movsb", "rep_stosb", "non_temporal"))


def count_instructions(valgrind, program, arguments):
    """A dictionary from each row's name to its instructions by size, and the names of the rows that came to an end."""
    with tempfile.TemporaryDirectory() as folder:
        run = subprocess.run(
            [valgrind, "-q", "--tool=callgrind", f"--callgrind-out-file={folder}/out", program, *arguments],
            stdout=subprocess.PIPE, text=True, check=True, env={**os.environ, "GLIBC_TUNABLES": TUNABLES})
        counts = collections.defaultdict(dict)
        for dump in pathlib.Path(folder).iterdir():
            contents = dump.read_text(errors="replace")
            label = re.search(r"^desc: Trigger: Client Request: (.+)\*(\d)$", contents, re.MULTILINE)
            total = re.search(r"^(?:summary|totals): (\d+)$", contents, re.MULTILINE)
            if label and total:
                counts[label[1]][int(label[2])] = int(total[1])
    return counts, run.stdout.splitlines()


def growth_per_doubling(counts):
    """Over both doublings of the differences, since buffers and trees grow in steps that even out."""
    one, two, four, eight = (counts[size] for size in SIZES)
    if eight - four < NOISE:
        return 0.0
    return math.sqrt((eight - four) / max(two - one, 1))


def main():
    counts, names = count_instructions(sys.argv[1], sys.argv[2], sys.argv[3:])
    faults = 0 if names else 1
    for name in names:
        if set(counts[name]) != set(SIZES):
            sys.exit(f"{name}: not all sizes were counted: {counts[name]}")
        growth = growth_per_doubling(counts[name])
        # The control shows that what is not linear is found.
        is_good = (growth < LIMIT) != name.startswith("control:")
        faults += not is_good
        verdict = "" if is_good else "  <- WRONG"
        print(f"{name:34} {counts[name][SIZES[-1]]:12,} instructions, growth {growth:.2f}{verdict}")
    print(f"{len(names)} rows, {faults} wrong (limit {LIMIT} per doubling)")
    sys.exit(1 if faults else 0)


main()
