"""Texts as manual pages have them: Markdown in, roff out."""
import re

INLINE = re.compile(r"`([^`]+)`|\*\*([^*]+)\*\*|\[([^]]+)\]\(([^)\s]+)\)")
ESCAPES = {"\\": r"\e", "-": r"\-", "'": r"\(aq", "`": r"\(ga", "^": r"\(ha", "~": r"\(ti"}


def plain(text):
    """Every character as it is; a line that begins like a request is none."""
    escaped = "".join(ESCAPES.get(character, character) for character in text)
    return r"\&" + escaped if escaped[:1] == "." else escaped


def bold(text):
    return rf"\fB{plain(text)}\fR"


def _shown(match):
    code, strong, link, target = match.groups()
    if code or strong:
        return bold(code or strong)
    return inline(link) + (f" <{plain(target)}>" if "://" in target else "")


def inline(text):
    """A paragraph's code and links."""
    out, end = "", 0
    for match in INLINE.finditer(text):
        out += plain(text[end:match.start()]) + _shown(match)
        end = match.end()
    out += plain(text[end:])
    return r"\&" + out if out[:1] == "." else out


def listing(lines):
    return [".PP", ".RS 4", ".nf", *map(plain, lines), ".fi", ".RE"]


def entry(tag, text):
    """A term and what it means."""
    return [".TP", tag, inline(text) if text else r"\&"]


def _cells(row):
    return [cell.strip().replace(r"\|", "|") for cell in re.split(r"(?<!\\)\|", row.strip()[1:-1])]


def _table(rows):
    """The first cell is the term. The third and later ones follow under the names of their columns."""
    names = _cells(rows[0])
    for row in rows[2:]:
        first, second, *others = _cells(row)
        rest = [f"{name}: {cell}." for name, cell in zip(names[2:], others) if cell not in ("", "none")]
        yield from entry(inline(first), " ".join([second.rstrip(".") + "." if rest else second, *rest]))


def _block(lines):
    """A paragraph, a list or a table."""
    if lines[0].startswith("|"):
        return list(_table(lines))
    out, text, opening = [], "", ".PP"
    for line in lines:
        item = re.match(r"(-|\d+\.) +(.*)", line)
        if item:
            out += [opening, inline(text)] if text else []
            opening, text = (r".IP \(bu 2" if item[1] == "-" else f".IP {item[1]} 4"), item[2]
        else:
            text = f"{text} {line.strip()}".strip()
    return out + [opening, inline(text)]


def markdown(text):
    """Blocks, one after the other."""
    out = []
    for part in re.split(r"^(```\w*\n.*?^```$)", text, flags=re.M | re.S):
        if part.startswith("```"):
            out += listing(part.split("\n")[1:-1])
            continue
        for block in re.split(r"\n\s*\n", part):
            lines = block.strip("\n").split("\n")
            if all(line.startswith("    ") for line in lines):
                out += listing(line[4:] for line in lines)
            elif lines[0].startswith("### "):
                out += [f'.SS "{plain(lines[0][4:])}"', *(_block(lines[1:]) if lines[1:] else [])]
            elif lines != [""]:
                out += _block(lines)
    return out


def chapters(page):
    """The chapters of a Markdown page by their headings, in its order."""
    parts = re.split(r"^## (.*)\n", page, flags=re.M)
    return dict(zip(parts[1::2], parts[2::2]))


def document(name, section, version, purpose, body):
    """A whole page. `purpose` is what stands behind the name in lists of pages."""
    head = f'.TH {plain(name.split(",")[0])} {section} "" "tembra {version}" "tembra manual"'
    return "\n".join([head, ".nh", ".ad l", ".SH NAME", rf"{plain(name)} \- {plain(purpose)}", *body]) + "\n"
