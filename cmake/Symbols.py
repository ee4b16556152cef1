#!/usr/bin/env python3
"""What a library exports of its own, against the list that says so: cmake/Symbols.py LIBRARY LIST [--update]

Only what the sources define is held: functions and objects with bodies in a .cpp, and the virtual tables and type
information of classes. Inline functions and instances of templates are left out, since which of them a library holds is
the optimiser's choice; hosts have their own.
"""
import difflib
import pathlib
import re
import subprocess
import sys

SHORTER = [
    ("std::basic_string_view<char16_t, std::char_traits<char16_t> >", "TextView"),
    ("std::__cxx11::basic_string<char16_t, std::char_traits<char16_t>, std::allocator<char16_t> >", "Text"),
    ("std::basic_string_view<char, std::char_traits<char> >", "std::string_view"),
    ("std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> >", "std::string"),
    ("[abi:cxx11]", ""),
    ("kelvane::", ""),
]


def exported(library):
    listing = subprocess.run(["nm", "-D", "--defined-only", "--format=posix", library],
                             capture_output=True, text=True, check=True).stdout
    names = []
    for line in listing.splitlines():
        name, kind = line.split()[:2]
        own_body = kind in "TDBR" and re.match(r"_ZNK?7kelvane|_ZTVN7kelvane|_ZTIN7kelvane", name)
        if own_body or (kind == "V" and re.match(r"_ZT[VI]N7kelvane", name)):
            names.append(name)
    plain = subprocess.run(["c++filt"], input="\n".join(names), capture_output=True, text=True, check=True).stdout
    for long, short in SHORTER:
        plain = plain.replace(long, short)
    return sorted(set(plain.splitlines()))


def main():
    library, path = sys.argv[1], pathlib.Path(sys.argv[2])
    now = exported(library)
    if "--update" in sys.argv[3:]:
        path.parent.mkdir(exist_ok=True)
        path.write_text("\n".join(now) + "\n")
        return
    difference = list(difflib.unified_diff(path.read_text().splitlines(), now, str(path), library, n=0, lineterm=""))
    if difference:
        print("\n".join(difference))
        sys.exit("exported symbols have changed; if they were meant to: ./kelvane symbols")


main()
