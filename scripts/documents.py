#!/usr/bin/env python3
"""Checks that the documents fit the program; scripts/check runs it.

Every text in double quotes in a user's document has to be a text of the program, complete or up to
an ellipsis. Every link in any document has to lead to a file. The manual pages have to state the
program's version.
"""
# SPDX-License-Identifier: GPL-3.0-or-later
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
DOCUMENTS = ["README.md", "docs/guide.md", "docs/listener-card.md", "docs/sound-chain.md",
             "docs/technician.md"]
MANUAL_PAGES = ["packaging/pellion.1", "tools/pellion-session.1", "tools/pellion-target.1"]
SOURCES = ["app", "session", "subject", "sound", "charts", "signal", "window", "base"]
QT_TEXTS = ["Yes"]

# Adjacent literals are one text, as for the compiler.
LITERALS = re.compile(r'"(?:[^"\\\n]|\\.)*"(?:\s*"(?:[^"\\\n]|\\.)*")*')
COMMENTS = re.compile(r'("(?:[^"\\\n]|\\.)*")|//[^\n]*')
LITERAL = re.compile(r'"((?:[^"\\\n]|\\.)*)"')
ESCAPES = {"n": "\n", "r": "\r", "t": "\t"}
QUOTED = re.compile(r'"([^"]+)"')
LINK = re.compile(r"\]\(([^)#]+)(?:#[^)]*)?\)")
CODE = re.compile(r"```.*?```|`[^`]*`", re.DOTALL)
VERSION = re.compile(r"^project\(pellion VERSION (\d+)", re.MULTILINE)
PAGE_VERSION = re.compile(r'^\.TH .*"Pellion (\S+)"', re.MULTILINE)


def read(name):
    return (ROOT / name).read_text(encoding="utf-8")


def all_documents():
    command = ["git", "-C", ROOT, "ls-files", "--cached", "--others", "--exclude-standard", "*.md"]
    listed = subprocess.run(command, check=True, capture_output=True, text=True).stdout
    return [name for name in listed.splitlines() if (ROOT / name).is_file()]


def program_texts():
    """Returns every text of the program's sources, and each column of texts with tabs."""
    texts = set(QT_TEXTS)
    for folder in SOURCES:
        for path in (ROOT / folder).rglob("*.[ch]*"):
            code = COMMENTS.sub(lambda m: m[1] or "", read(path))
            for run in LITERALS.findall(code):
                joined = "".join(LITERAL.findall(run))
                text = re.sub(r"\\(.)", lambda m: ESCAPES.get(m[1], m[1]), joined)
                texts.update(part.strip() for part in [text, *text.split("\t")])
    return texts


def missing_texts(document, texts):
    """Returns the quoted texts of a document that the program does not have."""
    for quoted in QUOTED.findall(CODE.sub("", document)):
        text, ellipsis, _ = " ".join(quoted.split()).partition("…")
        text = text.rstrip()
        if not (any(known.startswith(text) for known in texts) if ellipsis else text in texts):
            yield quoted


def dead_links(name):
    """Returns the links of a document to files that do not exist."""
    for target in LINK.findall(read(name)):
        if not re.match(r"[a-z]+:", target) and not (ROOT / name).parent.joinpath(target).exists():
            yield target


def other_versions():
    """Returns the manual pages whose version is not the program's, and both versions."""
    version = f"v{int(VERSION.search(read('CMakeLists.txt'))[1]):03}"
    for name in MANUAL_PAGES:
        found = PAGE_VERSION.search(read(name))
        if not found or found[1] != version:
            yield name, found and found[1], version


def main():
    texts = program_texts()
    objections = [f'{name}: the program has no text "{quoted}"'
                  for name in DOCUMENTS for quoted in missing_texts(read(name), texts)]
    objections += [f"{name}: there is no {target}"
                   for name in all_documents() for target in dead_links(name)]
    objections += [f"{name}: the version is {found}, the program's is {expected}"
                   for name, found, expected in other_versions()]
    print(*objections, sep="\n", end="\n" if objections else "", file=sys.stderr)
    return 1 if objections else 0


sys.exit(main())
