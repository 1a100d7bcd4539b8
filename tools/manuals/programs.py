"""Pages of section 1, from what the programs answer to --help and from the pages that tell of them."""
import os
import re
import subprocess

from roff import bold, chapters, document, entry, inline, markdown, plain

ENTRY = re.compile(r"  (\S.*?)(?:  +(\S.*))?$")
SPEC = re.compile(r"(?P<name>(?:-\w,)?[-\w]+(?:,--[-\w]+)*)(?: (?P<type>[A-Z]+)(?::(?P<check>\{[^}]*\}|.+?\]|[A-Z]+))?)?"
                  r"(?:\{[^}]*\})?(?:=(?P<default>\S+))?(?: \(Env:(?P<env>\w+)\))?(?P<required> REQUIRED)?"
                  r"(?P<many> \.\.\.)?(?: Excludes: (?P<excludes>.+))?$")


class Help:
    """The text in its parts: paragraphs, the usage, lists of options and commands, and paragraphs behind them."""

    def __init__(self, text):
        self.text, self.usage, self.sections = text, [], {}
        self.description, self.footer = [], []
        section, part = None, ""
        for line in text.split("\n"):
            heading = re.match(r"(Options|Positionals|Subcommands):$", line)
            item = ENTRY.match(line)
            if re.match("usage: ", line, re.I) or (self.usage and line.startswith("       ") and not self.sections):
                self.usage.append(line[7:].strip())
            elif heading:
                section = self.sections.setdefault(heading[1], [])
            elif item and (section is not None or item[2]) and not line.startswith("   "):
                section = self.sections.setdefault("Options", []) if section is None else section
                section.append([item[1], item[2] or ""])
            elif line.startswith("   ") and section:
                section[-1][1] = f"{section[-1][1]} {line.strip()}".strip()
            else:
                part = self._take(line, part)
        self._take("", part)

    def _take(self, line, part):
        if line.strip():
            return f"{part} {line.strip()}".strip()
        if part:
            (self.footer if self.sections or part.startswith("Exit status") else self.description).append(part)
        return ""

    def purpose(self):
        first = re.split(r"(?<=[a-z])[.]", self.description[0] + ".")[0]
        return first[:1].lower() + first[1:]


def help_of(program, words):
    """`program` is a path. Nothing of the machine is told in a page."""
    libraries = ":".join(filter(None, [str(program.parent.parent / "lib"), os.environ.get("LD_LIBRARY_PATH")]))
    environment = {"LD_LIBRARY_PATH": libraries, "XDG_RUNTIME_DIR": "$XDG_RUNTIME_DIR"}
    said = subprocess.run([program, *words, "--help"], env=environment, capture_output=True, text=True, check=True)
    return Help(said.stdout)


def _option(spec, meaning):
    found = SPEC.match(spec)
    if not found:
        return entry(bold(spec), meaning)
    check = found["check"] or ""
    kind = check if check.isalpha() else found["type"]  # a FILE is no mere TEXT
    tag = bold(found["name"].replace(",", ", ")) + (rf" \fI{kind}\fR" if kind else "")
    remarks = [meaning]
    if check.startswith("{"):
        choices = check[1:-1].split(",")
        if not set(choices) <= set(re.findall(r"\w[-\w]*", meaning)):
            remarks.append("one of " + ", ".join(choices))
    elif check and kind != check:
        remarks.append("from " + check[check.index("[") + 1:-1].replace(" - ", " to "))
    if found["many"] and "several times" not in meaning:
        remarks.append("may be given several times")
    if found["excludes"]:
        remarks.append("not together with " + found["excludes"])
    if found["default"]:
        remarks.append("default: " + found["default"])
    if found["env"]:
        remarks.append(f"{found['env']} of the environment comes before the default")
    return entry(tag, "; ".join(remarks))


def _arguments(text, left_out=()):
    for spec, meaning in text.sections.get("Positionals", []) + text.sections.get("Options", []):
        if not spec.startswith(left_out):
            yield from _option(spec, meaning)


def _commands(program, text, words=()):
    for name, _ in text.sections.get("Subcommands", []):
        command = help_of(program, [*words, name])
        if command.text == text.text:  # another name for the help itself
            continue
        yield f'.SS "{plain(command.usage[0])}"'
        yield from markdown("\n\n".join(part[:1].upper() + part[1:].rstrip(".") + "." for part in command.description))
        yield from _arguments(command, ("-h,",))
        yield from _commands(program, command, (*words, name))


def page(program, version, told="", left_out=(), also=()):
    """`told`: a Markdown page about the program, of which all chapters but `left_out` are taken."""
    text = help_of(program, [])
    body = [".SH SYNOPSIS", ".nf", *map(bold, text.usage), ".fi", ".SH DESCRIPTION"]
    body += markdown("\n\n".join(text.description))
    if "Options" in text.sections or "Positionals" in text.sections:
        body += [".SH OPTIONS", *_arguments(text)]
    if "Subcommands" in text.sections:
        body += [".SH COMMANDS", *_commands(program, text)]
    for title, chapter in chapters(told).items():
        if title not in left_out:
                body += [f'.SH "{plain(title.upper())}"', *markdown(chapter)]
    for part in text.footer:
        status = re.match(r"Exit status: (.*)", part)
        body += [".SH EXIT STATUS", inline(status[1][:1].upper() + status[1][1:])] if status else [".PP", inline(part)]
    body += [".SH SEE ALSO", ",\n".join(rf"\fB{plain(name)}\fR({section})" for name, section in also)]
    return document(program.name, 1, version, text.purpose(), body)
