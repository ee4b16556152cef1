#!/usr/bin/env python3
"""Makes one source of all examples in the documentation, to be compiled: cmake/Examples.py ROOT OUTPUT [--qt]

An example is what stands between "```cpp" and "```" in the comments of a public header, in README.md and in
Documentation/*.md. Each gets a namespace of its own, behind ExamplesContext.h, which declares what examples take as
given; statements also get a function around them. Compilers report mistakes where the example stands. Without --qt those
that need Qt are left out.
"""
import pathlib
import re
import sys

# An example that begins so is declarations, or a whole program; any other is statements.
DECLARATION = re.compile(r"#include|(class|struct|template|using)\b|[\w:]+[&*]? [\w:]+\(.*\) \{$")
CALL = re.compile(r" {2,}\S.*\w\(.*\).*;( *//.*)?$")


def comment_lines(text):
    """The text of each comment that has its line for itself; other lines are None."""
    for line in text.splitlines():
        match = re.match(r"\s*// ?(.*)", line)
        yield match[1] if match else None


def examples(path):
    """The number of the first line, and the lines, of each example."""
    text = path.read_text()
    start, body = 0, []
    for number, line in enumerate(comment_lines(text) if path.suffix == ".h" else text.splitlines(), 1):
        if line == "```cpp":
            start, body = number + 1, []
        elif start and line is None:
            sys.exit(f"{path}:{start}: this example has no end")
        elif start and line == "```":
            yield start, body
            start = 0
        elif start:
            body.append(line)
        elif path.suffix == ".h" and line and CALL.match(line):
            sys.exit(f"{path}:{number}: what looks like C++ stands between ```cpp and ```, so that it is compiled")


def rendered(path, number, body, name):
    includes = [line for line in body if line.startswith("#include")]
    code = [f'#line {number} "{path}"'] + ["" if line in includes else line for line in body]
    if not DECLARATION.match(next(line for line in body if line and not line.startswith("//"))):
        code = ["void example() {", *code, "}"]
    return includes, [f"namespace examples::{name} {{", *code, "}"]


def main():
    root, output, with_qt = pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2]), "--qt" in sys.argv
    sources = root / "Sources"
    headers = [path for path in sorted(sources.rglob("*.h")) if not path.match("Qt/*/*.h")]
    headers = [path for path in headers if with_qt or path.parent.name != "Qt"]
    includes = [f'#include "{path.relative_to(sources)}"' for path in headers] + ['#include "ExamplesContext.h"']
    code, count = [], 0
    for path in headers + [root / "README.md", *sorted((root / "Documentation").glob("*.md"))]:
        for number, body in examples(path):
            if not with_qt and any(line.startswith("#include <Q") for line in body):
                continue
            count += 1
            needed, lines = rendered(path, number, body, f"example{count}")
            includes += [include for include in needed if include not in includes]
            code += lines
    output.write_text("\n".join(includes + code) + "\n")


main()
