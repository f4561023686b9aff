#!/usr/bin/env python3
"""Writes letter_cases.h from the Unicode character database that Python brings: python3 common/make_letter_cases.py

A pair is an upper and a lower letter of one UTF-16 unit each, either of which is the other's only counterpart: what a
conversion there and back leaves as it was. Georgian is left out: its two alphabets are no cases to its readers, and
systems leave it alone.
"""

import unicodedata
from pathlib import Path

UNITS = 0x10000
GEORGIAN = [range(0x10A0, 0x1100), range(0x1C90, 0x1CC0), range(0x2D00, 0x2D30)]


def pairs():
    """Lower letters by their upper ones."""
    found = {}
    for of_upper in (str.upper, str.title):  # the latter for letters whose upper case is of several units
        for unit in range(UNITS):
            upper, lower = chr(unit), chr(unit).lower()
            if (lower != upper and len(lower) == 1 and ord(lower) < UNITS and of_upper(lower) == upper
                    and ord(lower) not in found.values() and not any(unit in letters for letters in GEORGIAN)):
                found.setdefault(unit, ord(lower))
    return dict(sorted(found.items()))


def runs(found):
    """[first, last, step, distance] of as few runs of upper letters as they make."""
    made = []
    for upper, lower in found.items():
        if made:
            first, last, step, distance = made[-1]
            here = upper - last
            if lower - upper == distance and here in (1, 2) and (first == last or here == step):
                made[-1] = [first, upper, here, distance]
                continue
        made.append([upper, upper, 1, lower - upper])
    return made


def main():
    lines = [f"// Written by make_letter_cases.py from Unicode {unicodedata.unidata_version}.", "#pragma once", "",
             "#include <cstdint>", "", "namespace murmelix {", "",
             "// Upper letters from `first` to `last`, every one or every other, each so far before its lower one.",
             "struct LetterCaseRun {", "    char16_t first, last;", "    std::uint8_t step;",
             "    std::int32_t distance;", "};", "", "// clang-format off", "inline constexpr LetterCaseRun letter_case_runs[] = {"]
    lines += [f"    {{0x{first:04X}, 0x{last:04X}, {step}, {distance}}}," for first, last, step, distance in
              runs(pairs())]
    lines += ["};", "// clang-format on", "", "} // namespace murmelix", ""]
    (Path(__file__).parent / "letter_cases.h").write_text("\n".join(lines), "utf-8")


if __name__ == "__main__":
    main()
