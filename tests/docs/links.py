#!/usr/bin/env python3
"""In the project's folder: every link of a page leads to a file of the project, and to a heading that is there."""
import re
import sys
from pathlib import Path

FENCE = re.compile(r"^```.*?^```", re.M | re.S)
LINK = re.compile(r"\]\(([^)\s]+)\)")
HEADING = re.compile(r"^#+ (.*)$", re.M)


def anchors(page):
    """The names that a page's headings get where it is shown."""
    headings = HEADING.findall(FENCE.sub("", page.read_text()))
    return {re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-") for heading in headings}


def broken(page):
    for target in LINK.findall(FENCE.sub("", page.read_text())):
        if "://" in target:
            continue
        path, _, anchor = target.partition("#")
        file = page.parent / path if path else page
        if not file.exists():
            yield f"{page}: {target}: no such file"
        elif anchor and anchor not in anchors(file):
            yield f"{page}: {target}: no such heading"


pages = sorted(page for page in Path().rglob("*.md") if page.parts[0] != "build")
if len(pages) < 10:
    sys.exit(f"found only {len(pages)} pages")
faults = [fault for page in pages for fault in broken(page)]
print("\n".join(faults))
sys.exit(bool(faults))
