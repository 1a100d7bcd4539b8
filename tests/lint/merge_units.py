#!/usr/bin/env python3
"""usage: merge_units.py FOLDER

Makes one unit of the test programs of each folder that are compiled alike, in the compile commands of a build in FOLDER
whose units are whole programs. Most of what checking a unit costs is in its headers, which these have in common.
"""
import json
import pathlib
import re
import sys

GOOGLE_TEST = "-DGTEST_HAS_PTHREAD"


def options_of(entry):
    """How a unit is compiled, without what tells programs apart that are the same otherwise."""
    return re.sub(r" -D\w+_EXPORTS| -o .*", "", entry["command"])


def sources_of(entry):
    unit = pathlib.Path(entry["file"])
    return re.findall(r'#include "(.*)"', unit.read_text()) if unit.suffix == ".cxx" else [str(unit)]


def merge(group, options):
    if len(group) == 1:
        return group[0]
    unit = pathlib.Path(group[0]["file"]).with_name("merged.cxx")
    sources = dict.fromkeys(source for entry in group for source in sources_of(entry))
    unit.write_text("".join(f'#include "{source}"\n' for source in sources))
    return {**group[0], "file": str(unit), "command": f"{options} -o {unit}.o -c {unit}"}


def main(build):
    commands = build / "compile_commands.json"
    groups = {}
    for entry in json.loads(commands.read_text()):
        if entry["file"].endswith(".c"):  # the rules are for C++
            continue
        options = options_of(entry)
        is_test = GOOGLE_TEST in options and entry["file"].endswith(".cxx")
        place = entry["file"].partition("/CMakeFiles/")[0] if is_test else entry["file"]
        groups.setdefault((place, options), []).append(entry)
    merged = [merge(group, options) for (_, options), group in groups.items()]
    commands.write_text(json.dumps(merged, indent=1))


main(pathlib.Path(sys.argv[1]).resolve())
