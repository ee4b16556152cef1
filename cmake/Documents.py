#!/usr/bin/env python3
"""Holds what the documents name against what there is: cmake/Documents.py ROOT

Every verb of `kelvane` stands in its help and in README's table, and none besides; `./kelvane VERB` and links to files,
wherever they stand, lead somewhere.
"""
import pathlib
import re
import subprocess
import sys

root = pathlib.Path(sys.argv[1]).resolve()
documents = [*root.glob("*.md"), *(root / "Documentation").glob("*.md")]
said = subprocess.run([root / "kelvane", "help"], capture_output=True, text=True, check=True).stdout

verbs = set(re.findall(r"^verb_(\w+)\(\)", (root / "kelvane").read_text(), re.M))
wrong = [f"help and verbs differ: {verb}" for verb in verbs ^ set(re.findall(r"^  ([a-z]+) ", said, re.M))]
table = re.findall(r"^\| `([a-z]+)\b.*?` \|", (root / "README.md").read_text(), re.M)
wrong += [f"README's table and verbs differ: {verb}" for verb in verbs ^ set(table)]
for document in documents:
    text = document.read_text()
    wrong += [f"{document.name}: no such verb: {verb}" for verb in re.findall(r"\./kelvane ([a-z]+)", text) if verb not in verbs]
    for link in re.findall(r"\]\(([^)#:]+)\)", text):
        if not (document.parent / link).exists():
            wrong.append(f"{document.name}: nothing at {link}")
if len(verbs) < 10 or wrong:
    sys.exit("\n".join(wrong) or "the verbs were not found")
