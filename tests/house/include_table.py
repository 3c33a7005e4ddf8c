#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Reads every #include of source/ and services/ and names each one that its room may not use.

A room is a folder of source/, and services/ is one more. ROOMS says what a room may use of the
others, OUTSIDE which rooms may include the headers of a library or of the system. The same run
checks that every file of the house begins with its licence.

    include_table.py [ROOT]     exit status 1 and a line per offence, `file:line: what and why`
"""

import re
import subprocess
import sys
from pathlib import Path

ROOMS = {
    "runtime": set(),
    "records": {"runtime"},
    "platform": {"runtime"},
    "markdown": {"runtime"},
    "identity": {"runtime", "records", "platform"},
    "Clients": {"runtime", "records", "identity"},
    "features": {"runtime", "records", "identity", "Clients"},
    "services": {"runtime", "records", "platform"},
}
ALL_ROOMS = {*ROOMS, "views"}
ROOMS["views"] = ALL_ROOMS
ROOMS["app"] = ALL_ROOMS

# What the headers of the outside are called, and who may include them: "room" for all files of a
# room, "room/*.cpp" for its sources alone, or one file. The first pattern that fits decides.
OUTSIDE = [
    (r"Q\w+|Qt\w*/.*", {"platform/*.cpp", "views"}),
    (r"xcb/.*", {"views/*.cpp"}),
    (r"curl/.*", {"platform/*.cpp", "platform/HTTPLibrary.hpp"}),
    (r"pulse/.*|gio/.*|systemd/.*|speex/.*|libsecret/.*|onnx.*", {"platform/*.cpp"}),
    (r"sqlite3.*\.h", {"services"}),
    (r"openssl/.*", {"platform/*.cpp", "services"}),
    (r"boost/(beast|asio)[/.].*", {"platform/*.cpp", "services"}),
    (r"unicode/.*", {"records/*.cpp", "platform/*.cpp"}),
    (r"CLI/.*", {"app"}),
    (r"cmark.*", {"markdown/*.cpp"}),
    (r"boost/.*", {"runtime", "records", "identity", "Clients", "platform/*.cpp", "services", "app"}),
    (r"fmt/.*", {*ALL_ROOMS, "app"}),
    # What is left with an ending is the operating system's.
    (r".*\.h", {"runtime/*.cpp", "platform/*.cpp", "services", "app"}),
]

INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*([<"])([^>"\n]+)[>"]', re.MULTILINE)
BLOCK_COMMENT = re.compile(r"/\*.*?\*/", re.DOTALL)
CODE = {".cpp", ".hpp", ".h"}
SCRIPTS = {".cmake", ".py", ".sh", ".qml"}
LICENCE = "SPDX-License-Identifier: MIT"


def room_of(path):
    """The room that a file belongs to, by its path from the root."""
    return path.parts[1] if path.parts[0] == "source" else path.parts[0]


def includes_of(text):
    """(line, included path, whether in angle brackets) of every include, comments left out."""
    text = BLOCK_COMMENT.sub(lambda comment: "\n" * comment.group().count("\n"), text)
    for match in INCLUDE.finditer(text):
        yield text.count("\n", 0, match.start(2)) + 1, match.group(2), match.group(1) == "<"


def is_implementation(path):
    return path.suffix == ".cpp" or path.stem.endswith("Impl")


def why_not_ours(path, room, included):
    """Why this file may not include a header of the house; None when it may."""
    used = included.split("/")[0]
    if used == room or "/" not in included and room == "services":
        return None
    if "/" not in included or ".." in included or used not in ROOMS:
        return "is no path from the root of the sources"
    allowed = ROOMS[room] | ({"platform"} if room == "Clients" and is_implementation(path) else set())
    if used not in allowed:
        return f"is of the room '{used}', which '{room}' may not use"
    if included.endswith("Impl.hpp") and room != "app":
        return f"is how '{used}' does it, not what it offers"
    return None


def why_not_outside(path, room, included):
    """Why this file may not include a header of a library or the system; None when it may."""
    for pattern, rooms in OUTSIDE:
        if re.fullmatch(pattern, included):
            if rooms & {room, f"{room}/*{path.suffix}", f"{room}/{path.name}"}:
                return None
            return "belongs in " + ", ".join(sorted(rooms))
    return None


def offences(path, text):
    """A line for each include of the file that breaks the table. The path is from the root."""
    room = room_of(path)
    if room not in ROOMS:
        return [f"{path}:1: '{room}' is no room of the table"]
    found = []
    for line, included, angled in includes_of(text):
        ours = not angled or "/" in included and included.split("/")[0] in ROOMS
        reason = (why_not_ours if ours else why_not_outside)(path, room, included)
        if reason:
            found.append(f"{path}:{line}: {included} {reason}")
    return found


def has_licence(text):
    lines = text.splitlines()
    first = 1 if lines and lines[0].startswith("#!") else 0
    return len(lines) > first and LICENCE in lines[first]


def needs_licence(path):
    return (path.suffix in CODE | SCRIPTS or path.name == "CMakeLists.txt"
            or path.parts[0] in {"scripts", ".ci"})


def check(root):
    """All offences below root, in the files that git knows or would add."""
    listed = subprocess.run(["git", "-C", root, "ls-files", "-z", "-co", "--exclude-standard"],
                            check=True, capture_output=True, text=True).stdout
    found = []
    for path in sorted(Path(name) for name in set(listed.split("\0")) if name):
        if not (root / path).is_file() or not needs_licence(path):
            continue
        text = (root / path).read_text(encoding="utf-8")
        if not has_licence(text):
            found.append(f"{path}:1: does not begin with '{LICENCE}'")
        if path.suffix in CODE and path.parts[0] in {"source", "services"}:
            found += offences(path, text)
    return found


def main():
    root = Path(sys.argv[1]) if len(sys.argv) > 1 else Path(__file__).resolve().parents[2]
    found = check(root)
    print("\n".join(found) if found else "Every include keeps to the table.")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
