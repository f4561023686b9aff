"""The frame that all pages share. A page is a file of pages/: lines "name: value", an empty line, then what is in <main>.
"{{name}}" stands for a part that is made, "{{root}}" for the way up to the folder Murmelix."""

import html
import re

NAVIGATION = (("help/livedemo.html", "Live demo"), ("download/d_characters.html", "Characters"),
              ("help/emoticons.html", "Fun sounds"), ("help/index.html", "Help"), ("download/index.html", "Download"))
FOOTER = (
    ("Meet it", (("index.html", "Welcome"), ("help/livedemo.html", "Live demo"),
                 ("help/emoticons.html", "Fun sounds"), ("sendmail/index.html", "Tell a friend"))),
    ("Learn it", (("help/index.html", "Help"), ("help/signin.html", "Signing in"), ("help/tips.html", "Tips and tricks"),
                  ("help/matchup.html", "Matchups"))),
    ("Get it", (("download/index.html", "Murmelix"), ("download/d_characters.html", "Characters"),
                ("download/langauges.html", "Languages and voices"))),
)

FRAME = """<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta name="color-scheme" content="light dark">
<meta name="description" content="{{description}}">
<meta property="og:title" content="{{full_title}}">
<meta property="og:description" content="{{description}}">
<meta property="og:image" content="http://{{host}}/Murmelix/pictures/stage.png">
<title>{{full_title}}</title>
<link rel="icon" type="image/svg+xml" href="{{root}}pictures/murmelix.svg">
<link rel="stylesheet" href="{{root}}site.css">
</head>
<body class="{{kind}}">
<a class="skip" href="#main">Skip to the page</a>
<header class="top">
<a class="brand" href="{{root}}index.html"><img src="{{root}}pictures/murmelix.svg" width="44" height="44" alt=""> \
Murmelix</a>
<nav aria-label="Pages"><ul>
{{navigation}}
</ul></nav>
</header>
<main id="main">
{{opening}}
{{main}}
</main>
<footer>
<img class="burrow" src="{{root}}pictures/burrow.svg" width="1200" height="300"
 alt="Under the meadow Brindle, curled up in his burrow, is asleep.">
<div class="under">
<nav aria-label="All pages">
{{footer}}
</nav>
<p>Murmelix {{version}} is free software under the MIT licence. These pages set no cookie, run no script and ask nobody else
for anything. Questions: <a href="mailto:{{support}}">{{support}}</a></p>
</div>
</footer>
</body>
</html>
"""

OPENING = """<div class="opening"><div class="on-stage">
<picture><source media="(prefers-reduced-motion: reduce)" srcset="{{root}}pictures/{{still}}">
<img class="host" src="{{root}}pictures/{{animated}}" width="144" height="144" alt="{{host_alt}}"></picture>
<div class="balloon">
<h1>{{heading}}</h1>
<p>{{says}}</p>
</div>
</div></div>"""


def read_page(path):
    """What a page's file says: its values by name, with "main" for the rest."""
    head, _, main = path.read_text("utf-8").partition("\n\n")
    values = {}
    for line in head.splitlines():
        name, colon, value = line.partition(": ")
        if not colon:
            raise ValueError(f"{path}: not \"name: value\": {line!r}")
        values[name] = value
    values["main"] = main.strip()
    return values


def filled(text, parts):
    """The text with every "{{name}}" replaced by the part of that name, in the parts themselves as well."""
    def part(found):
        return filled(parts[found[1]], parts)
    return re.sub(r"\{\{(\w+)\}\}", part, text)


def list_of_links(links, here):
    """Items of a list; the page that is shown is marked as such."""
    items = []
    for address, name in links:
        current = ' aria-current="page"' if address == here else ""
        items.append(f'<li><a href="{{{{root}}}}{address}"{current}>{html.escape(name)}</a></li>')
    return "\n".join(items)


def page(name, values, parts, root=None):
    """The whole page of the file `name`, a path below the folder Murmelix."""
    root = "../" * name.count("/") if root is None else root
    columns = "\n".join(f'<div><h2>{heading}</h2><ul>\n{list_of_links(links, name)}\n</ul></div>'
                        for heading, links in FOOTER)
    every = {
        **parts, "kind": "page", "opening": OPENING if "says" in values else "", **values, "root": root,
        "full_title": "Murmelix: " + values["title"] if values["title"] != "Murmelix" else
        "Murmelix reads your conversations aloud",
        "navigation": list_of_links(NAVIGATION, name), "footer": columns,
    }
    return filled(FRAME, every)
