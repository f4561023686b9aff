#!/usr/bin/env python3
"""Packs a staged program directory: the setup (NSIS) and a portable .zip. The same files, version and date make the same bytes.

    pack.py --staged DIR --bits 64|32 --date SECONDS --out DIR [--icons DIR] [--version V] [--compression lzma|zlib]
            [--only setup|zip]
    pack.py --sums DIR
"""

import argparse
import hashlib
import os
import re
import shutil
import subprocess
import sys
import tempfile
import time
import zipfile
from pathlib import Path

HERE = Path(__file__).resolve().parent
ROOT = HERE.parent

# What only the Messenger client needs. Everything else is the program's.
MESSENGER = re.compile(r"MessengerClient\.exe|conversations/.*")
# Names that the script of the setup takes as they are.
PLAIN = re.compile(r"[A-Za-z0-9_.() /-]+")
EARLIEST = 315532800  # a .zip knows no time before 1980


def project_version():
    return re.search(r"^project\(Murmelix VERSION (\d+\.\d+\.\d+)", (ROOT / "CMakeLists.txt").read_text("utf-8"), re.M)[1]


def files_of(folder):
    """Relative paths of all files, in an order of their own, whatever that of the disk."""
    files = sorted(path.relative_to(folder).as_posix() for path in folder.rglob("*") if path.is_file())
    strange = [name for name in files if not PLAIN.fullmatch(name)]
    if strange or not files:
        sys.exit(f"{folder}: " + (f"names that a setup cannot carry: {strange}" if strange else "there are no files"))
    return files


def lists(files, folder):
    """The script's macros: the files installed, and the same taken away, and their folders where nothing else is in them."""
    lines = []
    for macro, chosen in (("INSTALL_PROGRAM", [name for name in files if not MESSENGER.fullmatch(name)]),
                          ("INSTALL_MESSENGER", [name for name in files if MESSENGER.fullmatch(name)])):
        lines.append(f"!macro {macro}")
        current = None
        for name in sorted(chosen, key=lambda name: (name.rpartition("/")[0], name)):
            parent = name.rpartition("/")[0]
            if parent != current:
                current = parent
                lines.append('  SetOutPath "' + "\\".join(["$INSTDIR", *parent.split("/")]).rstrip("\\") + '"')
            lines.append(f'  File "{folder}/{name}"')
        lines += ['  SetOutPath "$INSTDIR"', "!macroend"]
    lines.append("!macro REMOVE_FILES")
    lines += ['  Delete "$INSTDIR\\' + name.replace("/", "\\") + '"' for name in files]
    parents = {parent for name in files for parent in Path(name).parents if parent != Path(".")}
    for parent in sorted(parents, key=lambda path: (-len(path.parts), path.as_posix())):
        lines.append('  RMDir "$INSTDIR\\' + "\\".join(parent.parts) + '"')
    lines.append("!macroend")
    return "\n".join(lines) + "\n"


def run(*command, **environment):
    done = subprocess.run([str(part) for part in command], stdin=subprocess.DEVNULL, capture_output=True, text=True, check=False,
                          env=dict(os.environ, **environment))
    if done.returncode != 0:
        sys.exit(f"{command[0]} ended with status {done.returncode}:\n{done.stdout}{done.stderr}")


def draw_pictures(folder):
    """The pictures of the setup's pages, as the old kind of .bmp that it shows: drawings with the program's icon on them."""
    icon = ROOT / "assets" / "icons" / "murmelix.svg"
    for name, size, left, top in (("wizard", 116, 24, 84), ("header", 47, 96, 5)):
        ground, mark = folder / f"{name}.ground.png", folder / f"{name}.mark.png"
        run("rsvg-convert", "-o", ground, HERE / "drawings" / f"{name}.svg")
        run("rsvg-convert", "-w", size, "-h", size, "-o", mark, icon)
        run("convert", ground, mark, "-geometry", f"+{left}+{top}", "-composite", "-alpha", "off", "-type", "TrueColor",
            "-strip", f"BMP3:{folder / name}.bmp")


def write_setup(options, staged, files, work, out):
    (work / "files.nsh").write_text(lists(files, staged), "utf-8")
    draw_pictures(work)
    for picture in work.glob("*.bmp"):  # carried along by the setup, with their dates
        os.utime(picture, (options.date, options.date))
    kilobytes = sum((staged / name).stat().st_size for name in files) // 1024
    half_done = out.with_suffix(".new.exe")
    defines = {"BITS": options.bits, "VERSION": options.version, "COMPRESSION": options.compression, "STAGED": staged,
               "OUTPUT": half_done, "LISTS": work / "files.nsh", "ICONS": options.icons, "PICTURES": work,
               "KILOBYTES": kilobytes}
    run("makensis", "-V2", "-WX", "-INPUTCHARSET", "UTF8", *(f"-D{name}={value}" for name, value in defines.items()),
        HERE / "setup.nsi", SOURCE_DATE_EPOCH=str(options.date), TZ="UTC0")
    half_done.replace(out)


def write_zip(options, staged, files, out):
    """What it unpacks to is one folder, in which the program is started."""
    moment = time.gmtime(max(options.date, EARLIEST))[:6]
    half_done = out.with_suffix(".new.zip")
    with zipfile.ZipFile(half_done, "w") as archive:
        contents = [(name, (staged / name).read_bytes()) for name in files]
        contents.append(("READ ME.txt", (HERE / "portable.txt").read_bytes().replace(b"\n", b"\r\n")))
        for name, data in sorted(contents):
            entry = zipfile.ZipInfo(f"Murmelix/{name}", moment)
            entry.create_system = 0  # no rights of another system's
            archive.writestr(entry, data, zipfile.ZIP_DEFLATED, 9)
    half_done.replace(out)


def write_sums(folder):
    """SHA256SUMS, as sha256sum -c reads it."""
    files = sorted(file for file in folder.iterdir() if file.suffix in (".exe", ".zip"))
    text = "".join(f"{hashlib.sha256(file.read_bytes()).hexdigest()}  {file.name}\n" for file in files)
    (folder / "SHA256SUMS").write_text(text, "utf-8")
    print(text, end="")


def pack(options):
    options.out.mkdir(parents=True, exist_ok=True)
    name = f"{options.version}-win{options.bits}"
    with tempfile.TemporaryDirectory() as work:
        # A copy whose files have the release's date: that is the one they are installed with.
        staged = Path(work) / "staged"
        shutil.copytree(options.staged, staged)
        files = files_of(staged)
        for file in files:
            os.utime(staged / file, (options.date, options.date))
        if options.only != "zip":
            write_setup(options, staged, files, Path(work), options.out / f"MurmelixSetup-{name}.exe")
        if options.only != "setup":
            write_zip(options, staged, files, options.out / f"Murmelix-{name}-portable.zip")


def main():
    parser = argparse.ArgumentParser(usage=__doc__)
    parser.add_argument("--sums", type=Path)
    parser.add_argument("--staged", type=Path)
    parser.add_argument("--bits", choices=("64", "32"))
    parser.add_argument("--date", type=int)
    parser.add_argument("--out", type=lambda text: Path(text).resolve())
    parser.add_argument("--icons", type=lambda text: Path(text).resolve(), default=ROOT / "build" / "host" / "assets" / "icons")
    parser.add_argument("--version", default=project_version())
    parser.add_argument("--compression", choices=("lzma", "zlib"), default="lzma")
    parser.add_argument("--only", choices=("setup", "zip"))
    options = parser.parse_args()
    if options.sums:
        write_sums(options.sums)
    elif None in (options.staged, options.bits, options.date, options.out):
        parser.error("--staged, --bits, --date and --out are needed")
    else:
        pack(options)


if __name__ == "__main__":
    main()
