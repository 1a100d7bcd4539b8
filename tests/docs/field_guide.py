#!/usr/bin/env python3
"""field_guide.py ISOLATE: in the project's folder, the field guide says what happens. The commands of each symptom run
in a network and a /tmp of their own, with all waits SPEED times shorter; then what the page shows has come, in order."""
import contextlib
import os
import re
import signal
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

PAGE = Path("docs/field-guide.md")
SCENARIOS = Path("sim/examples/field")
SPEED = "30"
READY = "until tembra-sim status >/dev/null 2>&1; do sleep 0.05; done"


def symptoms():
    """The headings that have commands, with these and what they should print."""
    for section in PAGE.read_text().split("\n## ")[1:]:
        blocks = dict(re.findall(r"^```(sh|text)\n(.*?)^```", section, re.M | re.S))
        if "sh" in blocks:
            yield section.split("\n")[0], blocks["sh"], blocks.get("text", "")


def script(commands):
    """The commands as a person has them: each simulated router is ready before the next line is typed."""
    hurried = commands.replace("tembra-sim run", f"tembra-sim run --speed {SPEED}")
    return re.sub(r"^(tembra-sim run .*) &$", rf"\1 &\n{READY}", hurried, flags=re.M)


def missing(shown, printed):
    """The first line of the page that did not come behind the lines before it; "..." stands for anything."""
    rest = iter(printed.split("\n"))
    for line in shown.splitlines():
        pattern = re.compile(".*".join(re.escape(part) for part in line.split("...")))
        if not any(pattern.fullmatch(each) for each in rest):
            return line
    return None


def run(command):
    """What a command prints, and its exit status; None where it has no end. Nothing that it started stays."""
    with tempfile.TemporaryFile("w+") as output:
        program = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=output, stderr=output, start_new_session=True)
        try:
            status = program.wait(100)
        except subprocess.TimeoutExpired:
            status = None
        with contextlib.suppress(ProcessLookupError):
            os.killpg(program.pid, signal.SIGKILL)  # the simulated router, too
        output.seek(0)
        return output.read(), status


def fault(symptom):
    heading, commands, shown = symptom
    if not shown.strip():
        return f"{heading}: the page does not show what is printed"
    printed, status = run([sys.argv[1], "--speed", SPEED, "bash", "-c", script(commands)])
    if status is None:
        return f"{heading}: no end\n{printed}"
    line = missing(shown, printed)
    return line and f"{heading}: not printed, or too early: {line}\n{printed}"


def unused(all_symptoms):
    commands = "".join(each[1] for each in all_symptoms)
    return [f"{file}: no symptom uses it" for file in sorted(SCENARIOS.glob("*.json")) if str(file) not in commands]


page = list(symptoms())
if len(page) < 10:
    sys.exit(f"found only {len(page)} symptoms")
with ThreadPoolExecutor(4) as pool:
    faults = unused(page) + list(filter(None, pool.map(fault, page)))
print("\n".join(faults))
sys.exit(bool(faults))
