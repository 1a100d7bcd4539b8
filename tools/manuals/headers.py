"""Pages of section 3, from the comments of the C headers."""
import re
import textwrap

from roff import bold, document, entry, markdown, plain

CHAPTER = re.compile(r"^// ---- (.*?) -+$\n", re.M)


def _words(lines):
    """What comment lines say. A parameter and what is returned get paragraphs of their own."""
    blocks = re.split(r"\n\s*\n", "\n".join(re.sub(r"^\s*///?<? ?", "", line) for line in lines))
    return "\n\n".join(block if _is_code(block) else _prose(block) for block in blocks)


def _is_code(block):
    return all(line.startswith("    ") for line in block.split("\n"))


def _prose(block):
    text = "\n".join(line.strip() for line in block.split("\n"))
    text = re.sub(r"\s*@param (\w+) +", r"\n\n**\1**: ", text)
    text = re.sub(r"\s*@return +", r"\n\nReturns: ", text)
    return re.sub(r"\n(?=- )", r"\n\n", text)


def _members(body):
    """Of a structure or an enumeration: what each is and means."""
    found = []
    for line in body.split("\n"):
        code, _, meaning = line.partition("///<")
        if code.strip() and not code.strip().startswith("//"):
            parts = re.split(r",\s*(?=[A-Z])", code.strip().rstrip(",;"))
            found += [[part, meaning.strip()] for part in parts if part not in "{}"]
        elif meaning and found:
            found[-1][1] += " " + meaning.strip()
    return found


class Chapter:
    """A part of a header: its functions, and their comments with those of the structures, in its order."""

    def __init__(self, title, text):
        self.title, self.functions, self.synopsis, self.body = title, [], [], []
        comment = []
        lines = iter(text.split("\n"))
        for line in lines:
            if line.startswith("//"):
                comment.append(line)
            elif line.startswith("TEMBRA_API"):
                self._function(line, lines, comment)
                comment = []
            elif re.match(r"(struct|enum) \w+ \{", line):
                self._record(line, lines, comment)
                comment = []
            elif re.match(r"#define TEMBRA_\w+ ", line):
                name, _, meaning = line.removeprefix("#define ").partition("///<")
                self.synopsis.append("#define " + name.strip())
                self.body += entry(bold(name.strip()), " ".join(filter(None, [_words(comment), meaning.strip()])))
                comment = []
            else:
                self._between(comment)
                comment = []

    def _between(self, comment):
        self.body += markdown(_words(comment)) if comment else []

    def _function(self, line, lines, comment):
        declaration, meaning = line, ""
        while ";" not in declaration:
            declaration += " " + next(lines).strip()
        declaration, _, meaning = declaration.partition(";")
        declaration = declaration.removeprefix("TEMBRA_API ")
        name = re.search(r"(\w+)\(", declaration)[1]
        self.functions.append(name)
        self.synopsis.append(declaration + ";")
        text = _words([*comment, *([meaning.strip()] if meaning.strip() else [])])
        self.body += [f".SS {name}", *markdown(text)] if text else []

    def _record(self, line, lines, comment):
        text = line
        while "};" not in text:
            text += "\n" + next(lines)
        head, _, rest = text.partition("{")
        self.body += [f'.SS "{plain(head.strip())}"', *markdown(_words(comment))]
        for name, meaning in _members(rest.replace("};", "")):
            self.body += entry(bold(name), meaning)


def _reference(name):
    return rf"\fB{plain(name)}\fR(3)"


def pages(header, version):
    """(name, text, other names) of each page. A header without functions has one, of its name."""
    text = header.read_text()
    introduction = re.match(r"(?://.*\n)*", text)[0].split("\n")
    said = "\n".join(line[3:] for line in introduction)
    about = re.split(r"[:.]", said)[0]
    text = text[text.index('extern "C" {'):].split("#endif\n", 1)[1].rsplit("#ifdef __cplusplus", 1)[0]
    parts = CHAPTER.split(text)
    chapters = [Chapter(title, part) for title, part in zip(["", *parts[1::2]], parts[::2])]
    include, about = bold(f"#include <tembra/{header.name}>"), about[:1].lower() + about[1:]
    if not any(chapter.functions for chapter in chapters):
        body = [".SH SYNOPSIS", include, ".SH DESCRIPTION", *markdown(said),
                *(line for chapter in chapters for line in chapter.body)]
        yield f"tembra_{header.stem}", document(f"tembra_{header.stem}", 3, version, about, body), []
        return
    chapters = [chapter for chapter in chapters if chapter.functions]
    whole = chapters[0].title == ""  # a header without chapters has one page
    for chapter in chapters:
        body = [".SH SYNOPSIS", ".nf", include, ".PP",
                *(line for each in chapter.synopsis for line in map(bold, textwrap.wrap(each, 78, subsequent_indent="    "))),
                ".fi", ".SH DESCRIPTION", *(markdown(said) if whole else []), *chapter.body]
        body += [] if whole else [".SH SEE ALSO", _reference(f"tembra_{header.stem}")]
        first, *others = chapter.functions
        purpose = about if whole else f"{about}: {chapter.title.lower()}"
        yield first, document(", ".join(chapter.functions), 3, version, purpose, body), others
    if not whole:
        body = [".SH SYNOPSIS", include, ".SH DESCRIPTION", *markdown(said), ".SH SEE ALSO",
                ",\n".join(_reference(chapter.functions[0]) for chapter in chapters)]
        yield f"tembra_{header.stem}", document(f"tembra_{header.stem}", 3, version, about, body), []
