#!/usr/bin/env python3
"""Builds icons and pictures: build_icons.py DIRECTORY RSVG-CONVERT writes DIRECTORY/*.ico and *.bmp.

NAME.svg becomes NAME.ico; NAME_small.svg, where there is one, gives its sizes up to 24 pixels. conversation.svg becomes
a picture, too, on white. menu/NAME.svg becomes menu_NAME.ico, of one bit a pixel and for every size that the checks of
menus have: as the picture of a menu item it takes the menu's own colours. menu/small/NAME.svg, drawn in dots, gives the
sizes at which little of the other would be left. smilies/NAME.svg becomes smiley_NAME.ico, in colours."""

import concurrent.futures
import pathlib
import struct
import subprocess
import sys
import zlib

SIZES = (16, 20, 24, 32, 40, 48, 64, 80, 96, 128, 256)
# What is no icon of a program needs only the sizes that it is shown in: at 96, 120, 144 and 192 dots an inch.
ICONS = {"murmelix": SIZES, "messenger": SIZES, "agent": SIZES, "setup": SIZES, "updater": SIZES,
         "conversation": (16, 20, 24, 32, 40, 48, 64), "about": (96, 120, 144, 192),
         "blank_character": (96, 120, 144, 192), "more_characters": (96, 120, 144, 192)}
SMILEY_SIZES = (16, 20, 24, 32)
MENU_SIZES = range(11, 33)
SMALL_MENU_SIZE, SMALL_MENU_UP_TO = 11, 13  # pixels of the small drawings, and how far they are used
HERE = pathlib.Path(__file__).resolve().parent


def render(converter, svg, size):
    return subprocess.run([converter, "-w", str(size), "-h", str(size), str(svg)], check=True,
                          stdout=subprocess.PIPE).stdout


def rows(png):
    """The rows of a PNG of four 8-bit channels, as bytes in the order red, green, blue, alpha."""
    at, width, data = 8, 0, b""
    while at < len(png):
        length, kind = struct.unpack_from(">I4s", png, at)
        body = png[at + 8:at + 8 + length]
        if kind == b"IHDR":
            width, _, depth, colours, _, _, interlaced = struct.unpack(">IIBBBBB", body)
            if (depth, colours, interlaced) != (8, 6, 0):
                raise ValueError("the picture is not plain 8-bit red, green, blue, alpha")
        elif kind == b"IDAT":
            data += body
        at += 12 + length
    raw, stride, result = zlib.decompress(data), width * 4, []
    before = bytes(stride)
    for start in range(0, len(raw), stride + 1):
        method, row = raw[start], bytearray(raw[start + 1:start + 1 + stride])
        for i in range(stride):
            left = row[i - 4] if i >= 4 else 0
            up, corner = before[i], before[i - 4] if i >= 4 else 0
            if method == 1:
                row[i] = (row[i] + left) & 255
            elif method == 2:
                row[i] = (row[i] + up) & 255
            elif method == 3:
                row[i] = (row[i] + (left + up) // 2) & 255
            elif method == 4:
                guess = left + up - corner
                nearest = min((abs(guess - left), 0, left), (abs(guess - up), 1, up),
                              (abs(guess - corner), 2, corner))[2]
                row[i] = (row[i] + nearest) & 255
        result.append(bytes(row))
        before = row
    return result


def iconImage(png, size):
    """One image of an icon: the PNG itself where it is large, else a bitmap with alpha and a mask of one bit a pixel."""
    if size >= 64:
        return png
    colours, mask = b"", b""
    for row in reversed(rows(png)):
        colours += b"".join(bytes((row[i + 2], row[i + 1], row[i], row[i + 3])) for i in range(0, len(row), 4))
        bits = "".join("0" if row[i + 3] >= 128 else "1" for i in range(0, len(row),
                                                                        4)).ljust((size + 31) // 32 * 32, "0")
        mask += int(bits, 2).to_bytes(len(bits) // 8, "big")
    return struct.pack("<IiiHHIIiiII", 40, size, size * 2, 1, 32, 0, len(colours) + len(mask), 0, 0, 0,
                       0) + colours + mask


def dottedImage(png, size):
    """One image of an icon of black dots: wherever the picture covers enough of one."""
    lines, mask = rows(png), b""
    # What is smaller than the image stands in its middle.
    width, beside = len(lines[0]) // 4, (size - len(lines)) // 2
    lines = [bytes(4 * width)] * beside + lines + [bytes(4 * width)] * (size - len(lines) - beside)
    for row in reversed(lines):
        bits = "".join("0" if row[i + 3] >= 97 else "1" for i in range(0, len(row), 4))
        bits = ("1" * beside + bits).ljust(size, "1").ljust((size + 31) // 32 * 32, "0")
        mask += int(bits, 2).to_bytes(len(bits) // 8, "big")
    return struct.pack("<IiiHHIIiiII", 40, size, size * 2, 1, 1, 0, 2 * len(mask), 0, 0, 2, 0) + bytes(
        (0, 0, 0, 0, 255, 255, 255, 0)) + bytes(len(mask)) + mask


def icon(images, bits=32):
    directory, offset = b"", 6 + 16 * len(images)
    for size, image in images:
        colours = 2 if bits == 1 else 0
        directory += struct.pack("<BBBBHHII", size % 256, size % 256, colours, 0, 1, bits, len(image), offset)
        offset += len(image)
    return struct.pack("<HHH", 0, 1, len(images)) + directory + b"".join(image for _, image in images)


def onWhite(row, i):
    alpha = row[i + 3]
    return tuple((row[i + k] * alpha + 255 * (255 - alpha) + 127) // 255 for k in (2, 1, 0))


def bitmap(png):
    """A bitmap file of 24 bits a pixel."""
    lines = rows(png)
    width, body = len(lines[0]) // 4, b""
    for row in reversed(lines):
        line = b"".join(bytes(onWhite(row, i)) for i in range(0, len(row), 4))
        body += line + bytes(-len(line) % 4)
    start = 14 + 40
    return (struct.pack("<2sIHHI", b"BM", start + len(body), 0, 0, start) +
            struct.pack("<IiiHHIIiiII", 40, width, len(lines), 1, 24, 0, len(body), 0, 0, 0, 0) + body)


def main(arguments):
    if len(arguments) != 3:
        sys.exit("usage: build_icons.py DIRECTORY RSVG-CONVERT")
    directory, converter = pathlib.Path(arguments[1]), arguments[2]
    directory.mkdir(parents=True, exist_ok=True)

    def buildIcon(name):
        small = HERE / f"{name}_small.svg"
        images = []
        for size in ICONS[name]:
            svg = small if size <= 24 and small.exists() else HERE / f"{name}.svg"
            images.append((size, iconImage(render(converter, svg, size), size)))
        (directory / f"{name}.ico").write_bytes(icon(images))

    def buildSmiley(svg):
        images = [(size, iconImage(render(converter, svg, size), size)) for size in SMILEY_SIZES]
        (directory / f"smiley_{svg.stem}.ico").write_bytes(icon(images))

    def buildMenuPicture(svg):
        small = svg.parent / "small" / svg.name
        images = []
        for size in MENU_SIZES:
            is_small = size <= SMALL_MENU_UP_TO and small.exists()
            png = render(converter, small, SMALL_MENU_SIZE) if is_small else render(converter, svg, size)
            images.append((size, dottedImage(png, size)))
        (directory / f"menu_{svg.stem}.ico").write_bytes(icon(images, bits=1))

    with concurrent.futures.ThreadPoolExecutor() as pool:
        list(pool.map(buildIcon, ICONS))
        list(pool.map(buildMenuPicture, sorted((HERE / "menu").glob("*.svg"))))
        list(pool.map(buildSmiley, sorted((HERE / "smilies").glob("*.svg"))))
    (directory / "conversation.bmp").write_bytes(bitmap(render(converter, HERE / "conversation.svg", 32)))


if __name__ == "__main__":
    main(sys.argv)
