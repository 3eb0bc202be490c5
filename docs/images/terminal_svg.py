#!/usr/bin/env python3
"""Draws terminal text as an SVG picture: standard input to standard output.

The picture of the demo is the beginning of what ./plenx demo leaves in build/demo:

    head -n 72 build/demo/timeline.txt | python3 docs/images/terminal_svg.py > docs/images/demo.svg

Each line of it has a colour for its mark.
"""

import re
import sys
from xml.sax.saxutils import escape

CHARACTER_WIDTH = 7.23  # of 12 px DejaVu Sans Mono and its like
LINE_HEIGHT = 16
MARGIN = 12
COLOURS = [
    (re.compile(r"^(\s*ok )"), "#7ee787"),
    (re.compile(r"\| ! "), "#ff9b8a"),
    (re.compile(r"\| < "), "#7ee787"),
    (re.compile(r"\| [>+-]"), "#79c0ff"),
]
PLAIN = "#d0d7de"


def colour(line):
    return next((value for pattern, value in COLOURS if pattern.search(line)), PLAIN)


def main():
    lines = sys.stdin.read().rstrip("\n").split("\n")
    width = round(max(map(len, lines)) * CHARACTER_WIDTH + 2 * MARGIN)
    height = len(lines) * LINE_HEIGHT + 2 * MARGIN
    print(f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{height}" '
          f'viewBox="0 0 {width} {height}">')
    print(f'<rect width="{width}" height="{height}" rx="6" fill="#161b22"/>')
    print('<g font-family="DejaVu Sans Mono, Menlo, Consolas, monospace" font-size="12">')
    for number, line in enumerate(lines):
        if line.strip():
            y = MARGIN + (number + 1) * LINE_HEIGHT - 4
            length = round(len(line) * CHARACTER_WIDTH, 1)
            print(f'<text x="{MARGIN}" y="{y}" fill="{colour(line)}" xml:space="preserve" '
                  f'textLength="{length}" lengthAdjust="spacingAndGlyphs">{escape(line)}</text>')
    print("</g>\n</svg>")


main()
