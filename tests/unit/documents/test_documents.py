"""The documents lead where they say, and each can be come to from the README."""

import re
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[3]
LINK = re.compile(r"!?\[[^\]]*\]\(([^)\s]+)\)")
# What is written in code is no link.
CODE = re.compile(r"```.*?```|`[^`\n]*`", re.DOTALL)


def documents():
    """Those of the repository's own: at its top, in docs/, and the README of a folder."""
    return [*ROOT.glob("*.md"), *(ROOT / "docs").glob("*.md"), ROOT / "site" / "README.md", ROOT / "assets" / "README.md"]


def anchors(text):
    """The names by which its headings can be linked."""
    return {re.sub(r"[^\w\- ]", "", heading.lower()).strip().replace(" ", "-")
            for heading in re.findall(r"^#+ (.*)$", text, re.MULTILINE)}


def links(file):
    return LINK.findall(CODE.sub("", file.read_text("utf-8")))


def broken(file):
    for link in links(file):
        if re.match(r"[a-z]+:", link):
            continue
        path, _, anchor = link.partition("#")
        target = (file.parent / path).resolve() if path else file
        if not target.exists():
            yield f"{file.relative_to(ROOT)}: there is no {link}"
        elif anchor and anchor not in anchors(target.read_text("utf-8")):
            yield f"{file.relative_to(ROOT)}: {link} has no such heading"


class Documents(unittest.TestCase):
    def test_every_link_leads_somewhere(self):
        self.assertEqual([fault for file in documents() for fault in broken(file)], [])

    def test_each_document_can_be_come_to_from_the_readme(self):
        met, waiting = set(), [ROOT / "README.md"]
        while waiting:
            file = waiting.pop()
            if file in met or file.suffix != ".md" or not file.exists():
                continue
            met.add(file)
            waiting += [(file.parent / link.partition("#")[0]).resolve() for link in links(file)
                        if not re.match(r"[a-z]+:", link) and link.partition("#")[0]]
        self.assertEqual(sorted(file.relative_to(ROOT).as_posix() for file in {*documents()} - met), [])

    def test_every_picture_of_the_documents_is_shown_by_one(self):
        shown = {(file.parent / link).resolve() for file in documents() for link in links(file)}
        pictures = {file for kind in ("png", "gif", "svg") for file in (ROOT / "docs").rglob(f"*.{kind}")}
        self.assertEqual(sorted(file.relative_to(ROOT).as_posix() for file in pictures - shown), [])

    def test_what_is_no_link_is_found(self):
        self.assertEqual(LINK.findall(CODE.sub("", "[a](b.md) `[c](d.md)` ![e](f.png)\n```\n[g](h)\n```")), ["b.md", "f.png"])
        self.assertEqual(anchors("# One, two\n## What is `asked`?\n"), {"one-two", "what-is-asked"})


if __name__ == "__main__":
    unittest.main()
