#!/usr/bin/env python3
"""Holds what README.md says about hosts with the library in a folder of their own: Subdirectory.py ROOT SCRATCH [--qt]

Of README's CMake blocks the second is for the first host, the third for the one with a window. Each is configured as it
stands there, and the host compiled as that says, but for the library, which has been built already.
"""
import json
import pathlib
import re
import shlex
import shutil
import subprocess
import sys

BEGINNING = "cmake_minimum_required(VERSION 3.25)\nproject(host LANGUAGES CXX)\nadd_executable(host main.cpp)\n"


def run(command, **options):
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, **options)
    if done.returncode:
        sys.exit(f"{shlex.join(map(str, command))}\nended with {done.returncode}:\n{done.stdout}")


def compile_host(folder, root, code, lists):
    folder.mkdir(parents=True)
    (folder / "KelvaneFoundation").symlink_to(root)
    (folder / "main.cpp").write_text(code)
    (folder / "CMakeLists.txt").write_text(BEGINNING + lists)
    run(["cmake", "-S", folder, "-B", folder / "build", "-G", "Ninja", "-DCMAKE_EXPORT_COMPILE_COMMANDS=ON"])
    commands = json.loads((folder / "build/compile_commands.json").read_text())
    command = next(entry for entry in commands if entry["file"] == str(folder / "main.cpp"))
    run(shlex.split(command["command"]) + ["-fsyntax-only"], cwd=command["directory"])


def main():
    root, scratch = pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2]).resolve()
    shutil.rmtree(scratch, ignore_errors=True)
    blocks = re.findall(r"^```(\w+)\n(.*?)^```$", (root / "README.md").read_text(), re.S | re.M)
    code = [contents for kind, contents in blocks if kind == "cpp"]
    lists = [contents for kind, contents in blocks if kind == "cmake"]
    compile_host(scratch / "host", root, code[0], lists[1])
    if "--qt" in sys.argv:
        compile_host(scratch / "window", root, code[2], lists[2])


main()
