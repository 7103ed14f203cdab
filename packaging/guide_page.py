#!/usr/bin/env python3
"""Makes a page of the guide: guide_page.py CMARK_GFM GUIDE.md GUIDE.html.

Headings get the names that links within the guide lead to. A link to a document that is not
installed becomes plain text. Fails where a link within the guide, or one to a picture, leads
nowhere.
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
HEADING = re.compile(r"<h([1-6])>(.*?)</h\1>", re.DOTALL)
LINK = re.compile(r'<a href="([^"]*)">(.*?)</a>', re.DOTALL)
PICTURE = re.compile(r'<img src="([^"]*)"')
TAG = re.compile(r"<[^>]*>")


def anchor(heading):
    """Returns the name under which a heading is linked, as code hosts form it."""
    text = html.unescape(TAG.sub("", heading)).lower()
    return re.sub(r"[^\w\- ]", "", text).replace(" ", "-")


def without_dead_links(body, anchors):
    """Returns the page's body without links out of what is installed."""

    def mended(link):
        target = link[1]
        if target.startswith("#") and target[1:] not in anchors:
            sys.exit(f"the guide has no section {target}")
        return link[0] if re.match("#|https?:", target) else link[2]

    return LINK.sub(mended, body)


def main():
    processor, source, page = sys.argv[1:]
    body = subprocess.run([processor, "--extension", "table", "--validate-utf8", source],
                          check=True, stdout=subprocess.PIPE, encoding="utf-8").stdout
    titles = [heading[1] for heading in HEADING.findall(body)]
    body = HEADING.sub(lambda h: f'<h{h[1]} id="{anchor(h[2])}">{h[2]}</h{h[1]}>', body)
    body = without_dead_links(body, {anchor(title) for title in titles})
    for picture in PICTURE.findall(body):
        if not (pathlib.Path(source).parent / picture).exists():
            sys.exit(f"the guide has no picture {picture}")
    pathlib.Path(page).write_text(PAGE.format(title=titles[0], body=body), encoding="utf-8")


main()
