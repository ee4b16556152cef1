#!/usr/bin/env python3
"""Holds what a host compiles against ours alone: cmake/PublicHeaders.py COMPILER SOURCES

All public headers together may read nothing but each other, the standard library, and what POSIX has for files. Which
files those two are the compiler itself tells.
"""
import pathlib
import subprocess
import sys

PLATFORM = ["bits/stdc++.h", "dirent.h", "sys/stat.h", "sys/types.h"]


def files_read(compiler, includes, *options):
    unit = "".join(f"#include <{include}>\n" for include in includes)
    command = [compiler, "-std=c++20", "-M", "-x", "c++", *options, "-"]
    rule = subprocess.run(command, input=unit, capture_output=True, text=True, check=True).stdout
    words = rule.replace("\\\n", " ").split()[1:]
    return {pathlib.Path(word).resolve() for word in words if word != "-"}


def main():
    compiler, sources = sys.argv[1], pathlib.Path(sys.argv[2]).resolve()
    headers = [path.relative_to(sources) for path in sources.rglob("*.h")]
    public = [header for header in headers if not (header.parts[0] == "Qt" and len(header.parts) > 2)]
    read = files_read(compiler, sorted(public), f"-I{sources}")
    ours = {sources / header for header in public}
    assert ours <= read, "not all headers were read"
    foreign = sorted(read - ours - files_read(compiler, PLATFORM))
    if foreign:
        sys.exit("hosts would compile other libraries' headers:\n  " + "\n  ".join(map(str, foreign)))
    print(f"{len(ours)} headers read nothing but each other, the standard library and POSIX")


main()
