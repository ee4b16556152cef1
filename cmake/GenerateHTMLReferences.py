#!/usr/bin/env python3
"""Writes Sources/Platform/Foundation/HTMLReferenceTable.cpp anew: cmake/GenerateHTMLReferences.py > that file.

The names are those of the HTML standard (13.5, "Named character references"), which Python carries with it and which
the standard promises never to change.
"""
from html.entities import html5

print("""// Made by cmake/GenerateHTMLReferences.py; do not edit.
#include "Platform/Foundation/HTMLReferences.h"

// clang-format off
namespace kelvane {

const HTMLReferenceName htmlReferenceNames[%d] = {""" % len(html5))
for name in sorted(html5):
    units = html5[name].encode("utf-16-be")
    values = [int.from_bytes(units[i:i + 2], "big") for i in range(0, len(units), 2)] + [0]
    print('    {u"%s", %d, {0x%04X, 0x%04X}},' % (name, len(name), values[0], values[1]))
print("""};

}  // namespace kelvane
// clang-format on""")
