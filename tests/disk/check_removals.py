#!/usr/bin/env python3
"""Checks that nothing removes, moves or replaces a file but the places that are meant to."""

import pathlib
import re
import sys

# Each place, and what it may call.
ALLOWED = {
    "disk/FileRemoval.cpp": {"unlinkat"},  # the gate
    "disk/linux/RenameIfFree.cpp": {"renameat2"},
    "disk/macos/RenameIfFree.cpp": {"renameatx_np"},
    "disk/FileByFileRemoval.cpp": {"unlinkat"},  # the visitor that the gate sends through folders in use
    # The gate's removal of an entry that still has to be the one that was listed.
    "disk/FolderListing.cpp": {"unlinkat"},
    # The atomic replacement of a file whose records are taken out, and its own temporary file.
    "disk/FileRewriting.cpp": {"unlinkat", "renameat"},
    # The settings' own temporary file and its atomic replacement.
    "platform/linux/DurableFile.cpp": {"unlink", "rename", "renameat2"},
    # An item goes to the trash whole, or not at all.
    "platform/linux/FreedesktopTrash.cpp": {"unlink", "unlinkat", "rename", "renameat2"},
    # The program's own autostart entry.
    "platform/linux/LinuxLoginItems.cpp": {"unlink"},
}
CALL = re.compile(
    r"(?:(?<![\w.>])(?:::|std::)?|fs::|filesystem::|QFile::|QDir::)"
    r"(unlink|unlinkat|rmdir|rename|renameat2?|renameatx_np|remove_all|moveToTrash|removeRecursively)\s*\("
    r"|(?:std::|filesystem::|fs::|(?<![\w:.>])::|QFile::|QDir::)(remove)\s*\("
)


def main(source: pathlib.Path) -> int:
    found = {}
    for path in sorted(source.rglob("*")):
        if path.suffix not in {".cpp", ".h", ".mm"}:
            continue
        name = path.relative_to(source).as_posix()
        text = re.sub(r"//[^\n]*|/\*.*?\*/", "", path.read_text(errors="replace"), flags=re.S)
        found[name] = {call for match in CALL.finditer(text) for call in match.groups() if call}
    if "unlinkat" not in found.get("disk/FileRemoval.cpp", set()):
        print("the gate's own calls were not found: this check no longer checks anything")
        return 1
    wrong = {name: calls - ALLOWED.get(name, set()) for name, calls in found.items()}
    for name, calls in wrong.items():
        for call in sorted(calls):
            print(f"{name}: {call}() outside the gate")
    return 1 if any(wrong.values()) else 0


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1])))
