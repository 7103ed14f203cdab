#!/usr/bin/env python3
"""Converts a document to a web page: guide_page.py CMARK_GFM DOCUMENT.md PAGE.html.

Headings get the names that links within the document lead to. A link to another document leads to
its page, or becomes plain text where none is installed. Fails where a link within the document, or
one to a picture, leads nowhere.
"""
# SPDX-License-Identifier: GPL-3.0-or-later
import html
import pathlib
import re
import subprocess
import sys

PAGE = """<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>Pellion: {title}</title>
<style>
body {{ max-width: 50em; margin: 2em auto; padding: 0 1em; line-height: 1.5;
       font-family: sans-serif; color: #222; background: #fff; }}
img {{ max-width: 100%; border: 1px solid #bbb; }}
table {{ border-collapse: collapse; }}
th, td {{ border: 1px solid #bbb; padding: 0.3em 0.6em; text-align: left; vertical-align: top; }}
pre {{ background: #f3f3f3; padding: 0.6em; overflow-x: auto; }}
a {{ color: #14509d; }}
</style>
</head>
<body>
{body}</body>
</html>
"""
# The same as in packaging/CMakeLists.txt.
INSTALLED = re.compile(r"(guide|listener-card|sound-chain|technician)\.md(#.*)?")
HEADING = re.compile(r"<h([1-6])>(.*?)</h\1>", re.DOTALL)
LINK = re.compile(r'<a href="([^"]*)">(.*?)</a>', re.DOTALL)
PICTURE = re.compile(r'<img src="([^"]*)"')
TAG = re.compile(r"<[^>]*>")


def anchor(heading):
    """Returns the name under which a heading is linked, as code hosts form it."""
    text = html.unescape(TAG.sub("", heading)).lower()
    return re.sub(r"[^\w\- ]", "", text).replace(" ", "-")


def with_live_links(body, anchors):
    """Returns the page's body with links to what is installed, and without any other."""

    def relinked(link):
        target = link[1]
        if target.startswith("#") and target[1:] not in anchors:
            sys.exit(f"the document has no section {target}")
        if re.match("#|https?:", target):
            return link[0]
        document = INSTALLED.fullmatch(target)
        if not document:
            return link[2]
        return f'<a href="{document[1]}.html{document[2] or ""}">{link[2]}</a>'

    return LINK.sub(relinked, body)


def main():
    processor, source, page = sys.argv[1:]
    body = subprocess.run([processor, "--extension", "table", "--validate-utf8", source],
                          check=True, stdout=subprocess.PIPE, encoding="utf-8").stdout
    titles = [heading[1] for heading in HEADING.findall(body)]
    body = HEADING.sub(lambda h: f'<h{h[1]} id="{anchor(h[2])}">{h[2]}</h{h[1]}>', body)
    body = with_live_links(body, {anchor(title) for title in titles})
    for picture in PICTURE.findall(body):
        if not (pathlib.Path(source).parent / picture).exists():
            sys.exit(f"the document has no picture {picture}")
    pathlib.Path(page).write_text(PAGE.format(title=titles[0], body=body), encoding="utf-8")


main()
