#!/usr/bin/env python3
"""Follows Documentation/FirstHost.md to the letter: cmake/follow_guide.py GUIDE BUILD SCRATCH

A block of code goes into the file that the text before it named last, a block of commands is run, and a block of text
is what the commands before it have to print. Only the first commands are replaced: the build at hand is installed where
they would install another one.
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys


def blocks(guide):
    """The kind and the contents of each block, and the last name of a file before it."""
    name = None
    for text, kind, contents in re.findall(r"(.*?)^```(\w+)\n(.*?)^```$", guide, re.S | re.M):
        name = (re.findall(r"`([\w.]+\.(?:txt|cpp))`", text) or [name])[-1]
        yield kind, contents, name


def environment(scratch):
    kept = {name: value for name, value in os.environ.items() if not name.startswith(("XDG_", "LC_", "LANG"))}
    return kept | {"HOME": str(scratch / "home"), "XDG_RUNTIME_DIR": str(scratch / "home"),
                   "QT_QPA_PLATFORM": "offscreen"}


def main():
    guide, build, scratch = (pathlib.Path(argument).resolve() for argument in sys.argv[1:4])
    shutil.rmtree(scratch, ignore_errors=True)
    host = scratch / "host"
    host.mkdir(parents=True)
    (scratch / "home").mkdir()
    installing = f"cmake --install '{build}' --prefix ~/kelvane >/dev/null\n"
    printed, checked = "", 0
    for kind, contents, name in blocks(guide.read_text()):
        if kind == "sh":
            if contents.startswith("./kelvane install"):
                contents, installing = installing, None
            run = subprocess.run(["bash", "-ec", contents], cwd=host, env=environment(scratch), text=True,
                                 stdout=subprocess.PIPE, stderr=subprocess.PIPE)
            if run.returncode:
                sys.exit(f"{contents}\nended with {run.returncode}:\n{run.stdout}{run.stderr}")
            printed += run.stdout
        elif kind == "text":
            said = "".join(line + "\n" for line in printed.splitlines() if not line.startswith(("-- ", "[", "Consolidate")))
            if said != contents:
                sys.exit(f"the guide says\n{contents}but its commands printed\n{said}")
            printed, checked = "", checked + 1
        else:
            (host / name).write_text(contents)
    if installing or checked < 2:
        sys.exit("the guide was not followed")


main()
