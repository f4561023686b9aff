#!/usr/bin/env python3
"""undated.py FILE.tlb: takes out of a type library when it was made, so that the same description makes the same bytes. widl
writes the moment twice: as a text for people, and as a number before that of its version. Any other shape ends this with a
message."""
import re
import sys
from pathlib import Path

TEXT = re.compile(rb"(Created by WIDL version [^\n]{1,80} at )(\w{3} \w{3} [ \d]\d \d\d:\d\d:\d\d \d{4})(\n)")
# Each number is a variant of the type VT_UI4, padded with "W".
NUMBER = re.compile(rb"(\x13\x00)(.{4})(WW\x13\x00\x2b\x02\x00\x07WW)", re.DOTALL)


def main(file):
    data = Path(file).read_bytes()
    for pattern, nothing in ((TEXT, b"Thu Jan  1 00:00:00 1970"), (NUMBER, bytes(4))):
        data, found = pattern.subn(lambda match, nothing=nothing: match[1] + nothing + match[3], data)
        if found != 1:
            sys.exit(f"{file}: its date was found {found} times, not once")
    Path(file).write_bytes(data)


main(*sys.argv[1:])
