#!/usr/bin/env python3
"""Draws how the folders of the source include one another: tools/diagram/diagram.py [-o docs/architecture.svg]

A box is a folder; an arrow points to a folder whose headers it includes. Arrows that follow from
others are left out. What every program stands on has a letter of its own in the boxes instead of arrows.
"""

import argparse
import re
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]

# The programs, and the folders that each is made of; a module stands for itself where others use it without its folder.
PROGRAMS = {
    "Murmelix.exe": ["app", "messenger", "characters", "matchups", "quickmsg", "languages", "controls", "download",
                     "matchups/matchup_store", "app/settings"],
    "AgentServer.exe": [f"companions/agent/{name}" for name in ("automation", "settings", "stage", "voice", "acs")],
    "MessengerClient.exe": [f"companions/messenger/{name}"
                            for name in ("client", "automation", "live", "reading", "irc", "chat")],
    "Setup and updates": ["companions/setup", "companions/updater"],
}
# Modules that count as another one.
WITH = {"app/pages": "app/settings", "app/shell_state": "app/settings"}
# The ground that all programs share, with its letters.
GROUND = {"ui": "u", "platform": "p", "common/com": "c", "common": "t"}
GROUND_SAYS = {"ui": "windows and controls, done by win32/", "platform": "what else is needed of the system",
               "common/com": "COM: clients, servers, events", "common": "text, addresses, code pages"}

BOX, ROW, GAP, MARGIN = (118, 44), 84, 14, 24
FONT = "font-family=\"'Segoe UI', 'DejaVu Sans', Arial, sans-serif\""
INK, PALE, PAPER = "#26323d", "#5d6f80", "#fbfaf6"
COLOURS = {"Murmelix.exe": "#cfe3d4", "AgentServer.exe": "#f6dfc0", "MessengerClient.exe": "#cfdff0",
           "Setup and updates": "#e6d8ea"}


class Cycle(Exception):
    """Folders include one another in a circle; the message names them."""


def folder_of(path, folders):
    """The part of these that a file belongs to: the deepest folder, or the module itself; None where it belongs to none."""
    found = max((name for name in (*folders, *WITH) if path.startswith((name + "/", name + "."))), key=len, default=None)
    return WITH.get(found, found)


def read(root, names):
    """By name: which of the others the C++ sources of each include."""
    found = {name: set() for name in names}
    tops = sorted({name.split("/")[0] for name in names})
    for file in sorted(file for top in tops for file in (root / top).rglob("*") if file.suffix in (".cpp", ".h")):
        inside = folder_of(file.relative_to(root).as_posix(), names)
        if inside is None:
            continue
        for header in re.findall(r'^#include "([^"]+)"', file.read_text("utf-8"), re.MULTILINE):
            found[inside] |= {folder_of(header, names)} - {None, inside}
    return found


def reachable(graph, start, way=()):
    """Every node that can be come to from `start`."""
    if start in way:
        raise Cycle(" -> ".join((*way[way.index(start):], start)))
    result = set()
    for node in graph[start]:
        result |= {node} | reachable(graph, node, (*way, start))
    return result


def reduced(graph):
    """The graph without the edges that follow from others."""
    return {node: {to for to in targets
                   if not any(to in reachable(graph, other) for other in targets if other != to)}
            for node, targets in graph.items()}


def rows(graph):
    """The nodes in rows: each below all that point to it."""
    depth = dict.fromkeys(graph, 0)
    for node in sorted(graph, key=lambda each: -len(reachable(graph, each))):
        for to in graph[node]:
            depth[to] = max(depth[to], depth[node] + 1)
    return [[node for node in graph if depth[node] == row] for row in range(max(depth.values()) + 1)]


def text(x, y, words, size, colour=INK, anchor="middle", weight="normal"):
    return (f'<text x="{x:g}" y="{y:g}" font-size="{size}" fill="{colour}" text-anchor="{anchor}" '
            f'font-weight="{weight}" {FONT}>{words}</text>')


def draw(root=ROOT):
    """The picture, as SVG."""
    names = [*GROUND, *(name for folders in PROGRAMS.values() for name in folders)]
    found = read(root, names)
    parts, left, height, arrows = [], MARGIN, 0, []
    for program, folders in PROGRAMS.items():
        graph = reduced({name: found[name] & set(folders) for name in folders})
        lined = rows({name: found[name] & set(folders) for name in folders})
        width = max(len(row) for row in lined) * (BOX[0] + GAP) + GAP
        places = {}
        for number, row in enumerate(lined):
            first = left + (width - len(row) * (BOX[0] + GAP) + GAP) / 2
            for column, name in enumerate(row):
                places[name] = (first + column * (BOX[0] + GAP), MARGIN + 40 + number * ROW)
        bottom = MARGIN + 40 + len(lined) * ROW
        height = max(height, bottom)
        parts.append((left, width, program, places))
        arrows += [(places[name], places[to]) for name in folders for to in sorted(graph[name])]
        left += width + GAP
    total = left - GAP + MARGIN
    ground = height + 26
    out = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {total:g} {ground + 110:g}" width="{total:g}" '
           f'height="{ground + 110:g}" role="img" aria-label="Folders of the source and what they include">',
           '<defs><marker id="tip" viewBox="0 0 8 8" refX="7" refY="4" markerWidth="7" markerHeight="7" orient="auto">'
           f'<path d="M0 0.5 8 4 0 7.5z" fill="{PALE}"/></marker></defs>',
           f'<rect width="100%" height="100%" rx="12" fill="{PAPER}"/>']
    for x, width, program, _ in parts:
        out.append(f'<rect x="{x:g}" y="{MARGIN}" width="{width:g}" height="{height - MARGIN:g}" rx="10" '
                   f'fill="{COLOURS[program]}" fill-opacity="0.45"/>')
        out.append(text(x + width / 2, MARGIN + 24, program, 15, weight="bold"))
    for (x, y), (to_x, to_y) in arrows:
        begin, end = (x + BOX[0] / 2, y + BOX[1]), (to_x + BOX[0] / 2, to_y - 2)
        turn = to_y - ROW + BOX[1]  # straight down beside the boxes between, then over
        bend = (end[1] - turn) / 2
        out.append(f'<path d="M{begin[0]:g} {begin[1]:g}V{turn:g}C{begin[0]:g} {turn + bend:g} {end[0]:g} '
                   f'{end[1] - bend:g} {end[0]:g} {end[1]:g}" fill="none" stroke="{PALE}" stroke-width="1.4" marker-end="url(#tip)"/>')
    for _, _, program, places in parts:
        for name, (x, y) in places.items():
            out.append(f'<rect x="{x:g}" y="{y:g}" width="{BOX[0]}" height="{BOX[1]}" rx="7" fill="{COLOURS[program]}" '
                       f'stroke="{INK}" stroke-opacity="0.35"/>')
            out.append(text(x + BOX[0] / 2, y + 19, name.split("/")[-1] + ("/" if (root / name).is_dir() else ""), 14))
            letters = " ".join(letter for base, letter in GROUND.items() if base in found[name])
            out.append(text(x + BOX[0] / 2, y + 37, letters, 12, PALE, weight="bold"))
    room = (total - 2 * MARGIN - GAP * (len(GROUND) - 1)) / len(GROUND)
    for number, (name, letter) in enumerate(GROUND.items()):
        x = MARGIN + number * (room + GAP)
        out.append(f'<rect x="{x:g}" y="{ground:g}" width="{room:g}" height="62" rx="7" fill="#e3e6e8" stroke="{INK}" '
                   'stroke-opacity="0.35"/>')
        out.append(text(x + 14, ground + 26, f"{name}/", 15, anchor="start", weight="bold"))
        out.append(text(x + room - 14, ground + 26, letter, 15, PALE, "end", "bold"))
        out.append(text(x + 14, ground + 48, GROUND_SAYS[name], 12, PALE, "start"))
    out.append(text(MARGIN, ground + 88, "An arrow: includes headers of. A letter: stands on this part of the ground.", 12, PALE, "start"))
    return "\n".join([*out, "</svg>", ""])


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("-o", "--output", type=Path, default=ROOT / "docs" / "architecture.svg")
    arguments = parser.parse_args()
    try:
        arguments.output.write_text(draw(), "utf-8")
    except Cycle as cycle:
        sys.exit(f"folders include one another: {cycle}")


if __name__ == "__main__":
    main()
