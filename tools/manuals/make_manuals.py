#!/usr/bin/env python3
"""make_manuals.py SOURCE OUT [PROGRAM...]: writes the manual pages to OUT/man3, and those of the programs and their files
to OUT/man1 and OUT/man5. No page is written by hand: the comments of the C headers, what the programs answer to --help,
and the Markdown pages about them are what the pages say."""
import re
import shutil
import sys
from pathlib import Path

import headers
import programs
from roff import chapters, document, markdown

# Chapters of Markdown pages that become pages of their own.
FILES = {"Scenarios": "tembra-scenario", "The catalogue": "tembra-catalogue"}
# What --help says, and what is for those who have the sources.
LEFT_OUT = ("Options of every command", "Options of `run`", "The rooms", "Trying it by hand", "A new daemon")


def write(folder, section, name, text):
    (folder / f"man{section}").mkdir(parents=True, exist_ok=True)
    (folder / f"man{section}" / f"{name}.{section}").write_text(text)


def write_calls(source, out, version):
    kit = source / "frontend/include/tembra"
    for header in [*sorted(kit.glob("*.h")), source / "include/tembra/service.h", source / "include/tembra/version.h"]:
        for name, text, others in headers.pages(header, version):
            write(out, 3, name, text)
            for other in others:
                write(out, 3, other, f".so man3/{name}.3\n")


def write_files(source, out, version, told):
    """The formats of files that a program reads."""
    parts = chapters(told)
    for title, name in FILES.items():
        if title not in parts:
            sys.exit(f"sim/README.md has no chapter \"{title}\"")
        body = [".SH DESCRIPTION", *markdown(parts[title]), ".SH SEE ALSO", r"\fBtembra\-sim\fR(1)"]
        write(out, 5, name, document(name, 5, version, f"{title.lower()} of the simulated router", body))


def write_programs(source, out, version, paths):
    told = {"tembra-assoc": (source / "cli/README.md").read_text(), "tembra-sim": (source / "sim/README.md").read_text()}
    files = [(name, 5) for name in FILES.values()]
    for path in paths:
        also = [(other.name, 1) for other in paths if other != path] + (files if path.name == "tembra-sim" else [])
        write(out, 1, path.name,
              programs.page(path, version, told.get(path.name, ""), (*LEFT_OUT, *FILES), sorted(also)))
    write_files(source, out, version, told["tembra-sim"])


def main():
    source, out = Path(sys.argv[1]), Path(sys.argv[2])
    text = (source / "include/tembra/version.h").read_text()
    version = ".".join(re.findall(r"define TEMBRA_VERSION_(?:MAJOR|MINOR|PATCH) (\d+)", text))
    shutil.rmtree(out, ignore_errors=True)
    write_calls(source, out, version)
    if len(sys.argv) > 3:
        write_programs(source, out, version, [Path(path) for path in sys.argv[3:]])


main()
