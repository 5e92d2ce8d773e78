"""How the Mac sources are compiled on a machine without a Mac: clang, the declarations of this folder, and the C++
library of the machine."""

import pathlib
import shutil
import subprocess
from concurrent.futures import ThreadPoolExecutor

ROOT = pathlib.Path(__file__).resolve().parents[2]
SOURCES = ROOT / "src/platform/macos"
BAD = ROOT / "tests/macos/bad"
CLANG = shutil.which("clang++-14") or shutil.which("clang++")
DEPLOYMENT_TARGET = "11.0"

COMMON = [
    "-x", "objective-c++", "-std=c++20", "-fobjc-arc", "-fblocks",
    "-I", str(ROOT / "src"), "-isystem", str(ROOT / "tests/macos/declarations"),
]
WARNINGS = [
    # Methods cannot leave a parameter without a name.
    "-Wall", "-Wextra", "-Wno-unused-parameter", "-Werror", "-Wshadow", "-Wnon-virtual-dtor", "-Woverloaded-virtual",
    "-Wcast-qual", "-Wundeclared-selector", "-Wimplicit-retain-self", "-Wnullable-to-nonnull-conversion",
]


def library_folders():
    """The include folders that clang uses for C++ programs of this machine."""
    answer = subprocess.run([CLANG, "-x", "c++", "-E", "-v", "/dev/null"], capture_output=True, text=True, check=True)
    listing = answer.stderr.split("#include <...> search starts here:")[1].split("End of search list.")[0]
    folders = [line.strip() for line in listing.strip().splitlines()]
    # Clang's own folder is found for every target.
    return [folder for folder in folders if "/lib/clang/" not in folder]


def linux_target():
    """Types and ownership, with the machine's own target."""
    return ["-fobjc-runtime=macosx-11"]


def apple_target():
    """Types and availability for the oldest system that the program runs on. The C++ library is the machine's own; its
    C library expects two things that clang only sets for Linux."""
    flags = ["-target", f"x86_64-apple-macos{DEPLOYMENT_TARGET}", "-Wunguarded-availability", "-nostdinc++",
             "-D_GNU_SOURCE", "-U__nonnull"]
    for folder in library_folders():
        flags += ["-isystem", folder]
    return flags


def diagnose(source, target, mode):
    """What clang has to say about the source; the empty text when it is content."""
    command = [CLANG, *mode, *target, *COMMON, *WARNINGS, str(source)]
    answer = subprocess.run(command, capture_output=True, text=True)
    if answer.returncode == 0 and not answer.stderr.strip():
        return ""
    return answer.stderr or f"status {answer.returncode}"


CHECK = ["-fsyntax-only"]
ANALYSE = ["--analyze", "--analyzer-output", "text"]


def mac_sources():
    return sorted(SOURCES.rglob("*.mm"))


def diagnose_all(target, mode):
    """Every complaint about a source of the Mac platform, by file name."""
    with ThreadPoolExecutor(2) as pool:
        sources = mac_sources()
        complaints = pool.map(lambda source: diagnose(source, target, mode), sources)
        return {source.name: text for source, text in zip(sources, complaints) if text}
