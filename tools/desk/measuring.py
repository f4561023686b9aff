"""What the system of the host accounts for the programs of a desk."""

import os
from pathlib import Path


def pid_of(desk, program):
    """The process of the host that runs a Windows program on this desk, or Wine's server; None where there is none."""
    for folder in Path("/proc").glob("[0-9]*"):
        try:
            command = (folder / "cmdline").read_bytes().split(b"\0")[0].replace(b"\\", b"/")
            environment = (folder / "environ").read_bytes()
        except OSError:
            continue
        if command.rpartition(b"/")[2] == program.encode() and \
                f"WINEPREFIX={desk.prefix.directory}".encode() in environment.split(b"\0"):
            return int(folder.name)
    return None


def processor_seconds(pid):
    fields = Path(f"/proc/{pid}/stat").read_text("ascii", "replace").rpartition(")")[2].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def memory_mb(pid):
    """What is the process' own: the memory that would be free without it; and all that is resident, with what it shares
    with the other programs in Wine."""
    lines = Path(f"/proc/{pid}/smaps_rollup").read_text("utf-8", "replace").splitlines()
    kilobytes = {line.split(":")[0]: int(line.split()[1]) for line in lines if line.endswith(" kB")}
    return (kilobytes["Private_Clean"] + kilobytes["Private_Dirty"]) / 1024, kilobytes["Rss"] / 1024


def descriptors(pid):
    return len(os.listdir(f"/proc/{pid}/fd"))
