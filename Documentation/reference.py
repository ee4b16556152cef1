#!/usr/bin/env python3
"""Turns the headers' plain comments into what doxygen reads.

  reference.py FILE                     one header with its comments as documentation; doxygen calls this for each
  reference.py --pages FOLDER FILE...   writes into the folder what is made from all headers together: the page that
                                        leads from selectors to C++ names, and the one that shows the pictures

A comment documents the declaration that follows it, and also those that follow that one without a blank line. In front
of the namespace it documents the file; alone between blank lines it is an introduction to what follows. It begins with
selectors where there are any. What stands between "```cpp" and "```" is an example; lines that are indented by two
blanks more are shown as they are.
"""
import collections
import pathlib
import re
import sys

HERE = pathlib.Path(__file__).parent
PICTURES = [
    ("gallery.png", "What the drawing operations draw:"),
    ("bench.svg", "How many times as fast as the fastest other library each row of `./kelvane bench` is:"),
]
SELECTOR = r"(?:[A-Za-z_][A-Za-z0-9_]*:)+|[A-Za-z_][A-Za-z0-9_]*"
SELECTORS = re.compile(rf"^((?:{SELECTOR})(?:, (?:{SELECTOR}))*)(?:$|  +(?=\S))")
SCOPE = re.compile(r"^(?:inline )?(namespace|class|struct|union|enum(?: class)?)\b(?: KELVANE_EXPORT)? ?([\w:]*)")
SPECIAL = {"&": "&amp;", "<": "&lt;", ">": "&gt;", '"': "&quot;"}


def escaped(text):
    return "".join(SPECIAL.get(c, "\\" + c if c in "\\@%#*_[]`" else c) for c in text)


def rendered(line):
    """A line of a comment with everything that doxygen would take for a command made harmless."""
    parts = re.split(r"`([^`]+)`", line)
    return "".join(f"<code>{escaped(part)}</code>" if i % 2 else escaped(part) for i, part in enumerate(parts))


def taken_selectors(lines):
    """The selectors that a comment begins with, and what is left of it."""
    selectors, rest = [], list(lines)
    while rest:
        match = SELECTORS.match(rest[0])
        if not match:
            break
        selectors += match[1].split(", ")
        remainder = rest[0][match.end():]
        if remainder:
            rest[0] = remainder
            break
        rest.pop(0)
    return selectors, rest


def documentation(lines):
    """Lines of a comment as lines for doxygen."""
    selectors, rest = taken_selectors(lines)
    names = ", ".join(f"<code>{escaped(selector)}</code>" for selector in selectors)
    if selectors and (not rest or not rest[0]):
        return [f"Selector: {names}.", *documentation(rest[1:])]
    out, block = [], None
    for line in rest:
        fence = line.startswith("```")
        is_indented = line.startswith("  ") or (block == "indented" and not line)
        kind = "example" if (block == "example") != fence else "indented" if is_indented else None
        if kind != block:
            out += ["@endcode"] if block else []
            out += ["@code{.cpp}" if kind == "example" else "@code{.unparsed}"] if kind else []
            block = kind
        if not fence:
            out.append(line if kind == "example" else line[2:] if kind else rendered(line))
    if block:
        out.append("@endcode")
    # Behind the text, whose first sentence is what lists show.
    return out + ["", f"Selector: {names}."] if selectors else out


def without_literals(line):
    return re.sub(r"//.*", "", re.sub(r"\"(?:\\.|[^\"\\])*\"|(?<!\w)u?'(?:\\.|[^'\\])+'", "0", line))


Declaration = collections.namedtuple("Declaration", "start end scopes text comment")


class Header:
    """Reads a header line by line and tells, for each declaration, its scope, its text and its comment."""

    def __init__(self, path):
        self.path = path
        self.lines = path.read_text().splitlines()
        self.scopes = []  # name, or None for a body
        self.namespaces = set()
        self.enumerations = set()
        self.statement = ""
        self.start = 0
        self.declarations = []
        self.file_comment = []
        self.comment = []
        self.introduction = []
        self.parentheses = 0

    def class_comment(self):
        """What introduces a header that does not do so itself: the comment of its class, or else of the first one."""
        scopes = [(SCOPE.match(declaration.text), declaration.comment) for declaration in self.declarations]
        classes = {scope[2]: comment for scope, comment in reversed(scopes) if scope and "class" in scope[1] and comment}
        return classes.get(self.path.stem) or next(reversed(classes.values()), [])

    def in_declarations(self):
        return None not in self.scopes

    def read(self):
        block = []
        for self.number, line in enumerate(self.lines):
            stripped = line.strip()
            if not self.statement and self.in_declarations() and stripped.startswith("//"):
                block.append(stripped[3:] if stripped.startswith("// ") else stripped[2:])
                continue
            if block:
                self.take_block(block, stripped)
                block = []
            if not stripped and not self.statement:
                self.comment = []
            elif not re.match(r"#|(public|protected|private):", stripped) or self.statement:
                self.take_code(without_literals(stripped))
        return self

    def take_block(self, block, following):
        if following.startswith("namespace kelvane"):
            self.file_comment += block + [""]
        elif not following:
            (self.introduction if self.scopes else self.file_comment).extend(block + [""])
        else:
            self.comment = block
            if self.introduction:
                self.comment = block + [""] + self.introduction
                self.introduction = []

    def take_code(self, code):
        if not self.statement:
            self.start = self.number
        for character in code:
            if self.in_declarations() and not (character == " " and not self.statement):
                self.statement += character
            if character in "()":
                self.parentheses += 1 if character == "(" else -1
            elif character == "{":
                self.open_brace()
            elif character == "}":
                self.close_brace()
            elif self.ends_statement(character):
                self.end_statement()
        if self.statement:
            self.statement += " "

    def ends_statement(self, character):
        if not self.in_declarations() or self.parentheses:
            return False
        return character == ";" or (character == "," and self.scopes and self.scopes[-1] in self.enumerations)

    def plain_statement(self):
        text = re.sub(r"\s+", " ", self.statement.rstrip("{;, ")).strip()
        while text.startswith("template <"):
            depth = 0
            for i, character in enumerate(text):
                depth += {"<": 1, ">": -1}.get(character, 0)
                if character == ">" and depth == 0:
                    text = text[i + 1:].strip()
                    break
        return text

    def open_brace(self):
        scope = SCOPE.match(self.plain_statement()) if self.in_declarations() and self.parentheses == 0 else None
        if not scope:
            self.scopes.append(None)
            return
        self.end_statement()
        self.scopes.append(scope[2])
        if scope[1] == "namespace":
            self.namespaces.add(scope[2])
        elif scope[1].startswith("enum"):
            self.enumerations.add(scope[2])
        self.comment = []

    def close_brace(self):
        was_declarations = self.in_declarations()
        is_namespace = self.scopes.pop() in self.namespaces
        if was_declarations:
            self.statement = "" if is_namespace else "}"  # a class has its semicolon yet to come
            self.comment = []
        elif self.in_declarations() and self.parentheses == 0:
            # A function's body ends its declaration; the braces of an initializer do not.
            head = re.sub(r"operator *..?=?|\([^()]*\)|[=!<>]=", "()", self.statement)
            if "(" in head and "=" not in head:
                self.end_statement()
            elif not self.plain_statement():
                self.statement = ""

    def end_statement(self):
        text = self.plain_statement()
        self.statement = ""
        if text.strip("} "):
            scopes = [scope for scope in self.scopes if scope]
            self.declarations.append(Declaration(self.start, self.number, scopes, text, self.comment))


def filtered(path):
    header = Header(path).read()
    before, left_out = {}, set()
    for declaration in header.declarations:
        if re.search(r"= ?delete$|^friend class", declaration.text):
            left_out.update(range(declaration.start, declaration.end + 1))
        elif declaration.comment:
            before.setdefault(declaration.start, documentation(declaration.comment))
    # As a group, a unit has one page with all of its documentation; the pages of files only list what is in them.
    out = [f"/// @defgroup {unit_of(path)} {included(path)}", f"/// @ingroup folder_{path.parent.name}", "///"]
    out += ["/// " + line for line in documentation(header.file_comment or header.class_comment())]
    for number, line in enumerate(header.lines):
        out += ["/// @}"] if re.match(r"}  // namespace (?!.*detail)", line) else []
        out += ["/// " + text if text else "///" for text in before.get(number, [])]
        out.append("" if number in left_out else line)
        out += [f"/// @addtogroup {unit_of(path)}", "/// @{"] if re.match(r"namespace (?!.*detail)[\w:]+ {", line) else []
    return "\n".join(out)


def unit_of(path):
    return re.sub(r"\W", "_", path.stem)


def included(path):
    parts = path.parts
    return "/".join(parts[len(parts) - 1 - parts[::-1].index("Sources") + 1:])


def declared_name(text):
    head = re.sub(r"\bKELVANE_EXPORT\b|\brequires\b.*?(?=\w+\()", "", text)
    match = re.search(r"(~?\w+|operator\S+)\s*\(", head)
    if match:
        return match[1]
    return re.split(r"[={\[]", head)[0].split()[-1]


def selector_rows(path):
    groups = {}
    for declaration in Header(path).read().declarations:
        if declaration.comment and not SCOPE.match(declaration.text):
            names = groups.setdefault(id(declaration.comment), (declaration.comment, []))[1]
            names.append((declaration.scopes, declared_name(declaration.text)))
    for comment, names in groups.values():
        for selector in taken_selectors(comment)[0]:
            same = [name for name in names if name[1] == selector.split(":")[0]]
            scopes, name = (same or names)[0]
            yield selector, "::".join(scopes[1:] + [name]), path


def selectors_page(paths):
    rows = sorted({row for path in paths for row in selector_rows(path)}, key=lambda row: (row[0].lower(), row))
    lines = ["# From selectors to C++ names {#selectors}", "", "| selector | C++ name | header |", "|---|---|---|"]
    lines += [f'| {escaped(selector)} | {escaped(name)} | @ref {unit_of(path)} "{path.name}" |'
              for selector, name, path in rows]
    return "\n".join(lines) + "\n"


def pictures_page():
    lines = ["# Pictures {#pictures}", ""]
    for picture, title in PICTURES:
        if (HERE / picture).exists():
            lines += [title, "", f"![]({picture})", ""]
    return "\n".join(lines)


def folders_page(paths):
    folders = sorted({path.parent for path in paths})
    return "".join(f"/// @defgroup folder_{folder.name} {included(folder)}\n" for folder in folders)


def main():
    if sys.argv[1] != "--pages":
        print(filtered(pathlib.Path(sys.argv[1])))
        return
    folder, paths = pathlib.Path(sys.argv[2]), [pathlib.Path(name) for name in sys.argv[3:]]
    folder.mkdir(parents=True, exist_ok=True)
    (folder / "Selectors.md").write_text(selectors_page(paths))
    (folder / "Pictures.md").write_text(pictures_page())
    (folder / "Folders.dox").write_text(folders_page(paths))


if __name__ == "__main__":
    main()
