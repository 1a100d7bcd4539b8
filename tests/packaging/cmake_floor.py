#!/usr/bin/env python3
"""cmake_floor.py CMAKE SOURCE

The files that build library, kit and stand-ins use nothing of CMake that is newer than their cmake_minimum_required. No
such old CMake is at hand: the manual of this one says since when there is each command, variable, property and module,
and most options of a command.
"""
import pathlib
import re
import subprocess
import sys

FILES = ["CMakeLists.txt", *(f"{folder}/CMakeLists.txt" for folder in
                             ("platform", "depot", "src", "frontend", "frontend/lua", "frontend/python", "examples",
                              "packaging")), "cmake/TembraTargets.cmake", "cmake/TembraHardening.cmake"]
KINDS = ("commands", "variables", "properties", "modules")
# What is older than the manual seems to say, or does no harm where it is not known.
KNOWN = {
    "variables: CMAKE_COMPILE_WARNING_AS_ERROR": "older ones ignore it",
    "add_library: ALIAS": "newer is an alias of an imported target",
    "install: COMPONENT": "newer is the one of runtime dependencies",
}


def sections(text):
    """Yields (name, text) of each entry of a manual: a heading is underlined."""
    parts = re.split(r"^(\S+)\n-+$", text, flags=re.M)
    yield from zip(parts[1::2], parts[2::2])


def version(text):
    return tuple(int(number) for number in text.split("."))


def newer_entries(section, floor):
    """Yields what is marked as new: None for the whole entry, the options that stand before the mark or behind it, and the
    kind of call whose description begins with it."""
    for place in re.finditer(r"(.*\n\s*)?^( *)\.\. versionadded:: ([\d.]+)\n((?:\2 +.*\n|\n)*)", section, flags=re.M):
        if version(place[3]) > floor:
            is_whole = not section[:place.start(2)].strip()
            yield None if is_whole else re.findall(r"``([A-Z][A-Z_]+)", (place[1] or "") + place[4])
            yield re.findall(r"\w\(([A-Z_]+)(?!.*\n\s*``)", section[max(0, place.start() - 400):place.start()], re.S)[-1:]


def used(kind, text):
    """The words of the files that may name such an entry."""
    if kind == "properties":
        text = " ".join(re.findall(r"(?:set_target_properties|set_property|get_target_property)\(([^()]*)", text))
    return set(re.findall(r"[A-Za-z_][A-Za-z0-9_]*", text))


def main(cmake, source):
    floor = version(re.search(r"cmake_minimum_required\(VERSION ([\d.]+?)(\.\.\.|\))", (source / FILES[0]).read_text())[1])
    text = re.sub(r"#.*", "", "\n".join((source / file).read_text() for file in FILES))
    found, looked_at = set(), 0
    for kind in KINDS:
        manual = subprocess.run([cmake, f"--help-{kind}"], capture_output=True, text=True, check=True).stdout
        for name, section in sections(manual):
            if name not in used(kind, text):
                continue
            looked_at += 1
            for options in newer_entries(section, floor):
                if options is None:
                    found.add(f"{kind}: {name}")
                elif kind == "commands":
                    calls = " ".join(re.findall(rf"\b{name}\(([^()]*)", text))
                    found |= {f"{name}: {option}" for option in options if re.search(rf"\b{option}\b", calls)}
    found -= KNOWN.keys()
    if looked_at < 50:
        sys.exit(f"only {looked_at} entries of the manual were found")
    sys.exit("newer than CMake " + ".".join(map(str, floor)) + ":\n" + "\n".join(sorted(found)) if found else 0)


main(sys.argv[1], pathlib.Path(sys.argv[2]))
