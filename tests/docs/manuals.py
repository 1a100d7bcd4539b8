#!/usr/bin/env python3
"""manuals.py PAGES SOURCE PROGRAM...: every command and option that a program tells of is in its manual page, every C call
of library and kit has one with its arguments, and man shows all of them without a warning."""
import functools
import re
import subprocess
import sys
from pathlib import Path

faults = []


@functools.cache
def shown(page, width="80"):
    """What a reader sees, without the breaks of lines."""
    if not page.exists():
        faults.append(f"there is no {page.name}")
        return ""
    other = re.fullmatch(r"\.so (.*)\n", page.read_text())
    if other:
        return shown(pages / other[1], width)
    told = subprocess.run(["man", "--warnings", "--local-file", page], capture_output=True, text=True, check=False,
                          env={"MANWIDTH": width, "PATH": "/usr/bin:/bin", "LC_ALL": "C.UTF-8"})
    if told.returncode != 0 or told.stderr:
        faults.append(f"{page}: {told.stderr}")
    return " ".join(told.stdout.split())


def answers(program, words=(), parents=()):
    """The help of the program and of all its commands."""
    text = subprocess.run([program, *words, "--help"], capture_output=True, text=True, check=True).stdout
    if text in parents:
        return
    yield words, text
    _, _, commands = text.partition("\nSubcommands:\n")
    for name in re.findall(r"^  (\S+)", commands.split("\n\n")[0], re.M):
        yield from answers(program, (*words, name), (*parents, text))


def check_program(program):
    page = shown(pages / "man1" / f"{program.name}.1")
    count = 0
    faults.extend(f"{program.name}(1) has the parser's own \"{each}\""
                  for each in re.findall(r"\b(?:TEXT|U?INT|FLOAT|SERVER):\S+|Excludes:|--\w+\{.*?\}", page))
    for words, text in answers(program):
        for option in re.findall(r"^  (?:-\w,)?(--[\w-]+)", text, re.M):
            count += 1
            if option not in page:
                faults.append(f"{program.name}(1) does not have {option}")
        if " ".join([program.name, *words]) not in page:
            faults.append(f"{program.name}(1) does not have the command {words}")
    return count


def check_calls(header):
    """Each call as its header declares it."""
    text = " ".join(re.sub(r"//.*", "", header.read_text()).split())
    calls = re.findall(r"TEMBRA_API ([^;{]*?(tembra_\w+)\([^;]*\);)", text)
    for declaration, name in calls:
        if declaration not in shown(pages / "man3" / f"{name}.3", "200"):
            faults.append(f"{name}(3) does not have: {declaration}")
    return [name for _, name in calls]


pages, source = Path(sys.argv[1]).resolve(), Path(sys.argv[2])
options = sum(check_program(Path(program)) for program in sys.argv[3:])
called = [name for header in [*source.glob("frontend/include/tembra/*.h"), *source.glob("include/tembra/*.h")]
          for name in check_calls(header)]
exported = re.findall(r"^ +(tembra_\w+);", "".join(path.read_text() for path in source.glob("*/exported.map")), re.M)
faults += [f"{name} is exported and has no page" for name in exported if name not in called]
for each in pages.glob("man5/*"):
    shown(each)
print(f"{options} options, {len(called)} calls")
if faults or options < 40 or len(called) < 50:
    sys.exit("\n".join(faults))
