"""How the Mac sources are compiled on a machine without a Mac: clang, the declarations of this folder, and the C++
library of the machine."""

import pathlib
import re
import shutil
import subprocess
from concurrent.futures import ThreadPoolExecutor

ROOT = pathlib.Path(__file__).resolve().parents[2]
SOURCES = ROOT / "src/platform/macos"
BAD = ROOT / "tests/macos/bad"
CLANG = shutil.which("clang++-14") or shutil.which("clang++")
DEPLOYMENT_TARGET = "11.0"

DECLARATIONS = ROOT / "tests/macos/declarations"
OBJECTIVE = ["-x", "objective-c++", "-fobjc-arc", "-fblocks"]
COMMON = ["-std=c++20", "-I", str(ROOT / "src")]
WARNINGS = [
    # Methods cannot leave a parameter without a name.
    "-Wall", "-Wextra", "-Wno-unused-parameter", "-Werror", "-Wshadow", "-Wnon-virtual-dtor", "-Woverloaded-virtual",
    "-Wcast-qual", "-Wundeclared-selector", "-Wimplicit-retain-self", "-Wnullable-to-nonnull-conversion",
]


def library_folders():
    """The include folders of LLVM's C++ library, which is the Mac's, and of this machine's C library."""
    command = [CLANG, "-stdlib=libc++", "-x", "c++", "-E", "-v", "/dev/null"]
    answer = subprocess.run(command, capture_output=True, text=True, check=True)
    listing = answer.stderr.split("#include <...> search starts here:")[1].split("End of search list.")[0]
    folders = [line.strip() for line in listing.strip().splitlines()]
    # Clang's own folder is found for every target.
    return [folder for folder in folders if "/lib/clang/" not in folder]


def linux_target():
    """Types and ownership, with the machine's own target."""
    return ["-fobjc-runtime=macosx-11", "-isystem", str(DECLARATIONS)]


def apple_target(system=DEPLOYMENT_TARGET):
    """Types and availability for the oldest system that the program runs on. The C library is this machine's, cut down
    to POSIX and what systems had before it, with the Mac's integers; what the Mac adds stands in the declarations."""
    flags = ["-target", f"x86_64-apple-macos{system}", "-Wunguarded-availability", "-nostdinc++",
             "-D_DEFAULT_SOURCE", "-D_POSIX_C_SOURCE=200809L", "-U__nonnull", "-isystem", str(DECLARATIONS)]
    for folder in library_folders():
        flags += ["-isystem", folder]
    return flags


# Beside a target: BOOL as Macs with Apple's own processors have it.
BOOL_IS_BOOL = ["-DHARBOR_BOOL_IS_BOOL"]


def diagnose(source, target, mode):
    """What clang has to say about the source; the empty text when it is content."""
    language = OBJECTIVE if source.suffix == ".mm" else []
    command = [CLANG, *mode, *target, *COMMON, *language, *WARNINGS, str(source)]
    answer = subprocess.run(command, capture_output=True, text=True)
    if answer.returncode == 0 and not answer.stderr.strip():
        return ""
    return answer.stderr or f"status {answer.returncode}"


CHECK = ["-fsyntax-only"]
ANALYSE = ["--analyze", "--analyzer-output", "text"]


def mac_sources():
    return sorted(SOURCES.rglob("*.mm"))


# What of the sources is not built on the Mac.
NOT_ON_THE_MAC = {"linux", "memory", "icu", "plist"}


def core_sources():
    """The C++ sources that the Mac's build is made of."""
    return sorted(path for path in (ROOT / "src").rglob("*.cpp")
                  if not NOT_ON_THE_MAC.intersection(path.relative_to(ROOT).parts))


def portable_sources():
    """Those of them that Linux builds too."""
    return [path for path in core_sources() if "macos" not in path.parts]


def core_headers():
    """The headers that the core includes."""
    return sorted(path for path in (ROOT / "src").rglob("*.h")
                  if not NOT_ON_THE_MAC.union({"macos"}).intersection(path.relative_to(ROOT).parts))


# The headers of POSIX and of older systems that both this machine and the Mac have.
SYSTEM_HEADERS = {
    "dirent.h", "fcntl.h", "fnmatch.h", "pwd.h", "spawn.h", "sys/param.h", "sys/resource.h", "sys/stat.h",
    "sys/wait.h", "unistd.h",
}


def strange_headers(source):
    """The headers with a name in ".h" in angle brackets that a C++ source includes and the Mac may lack."""
    included = set(re.findall(r"^\s*#\s*(?:include|import)\s*<([^>]*\.h)>", source.read_text(), re.M))
    return included - SYSTEM_HEADERS


def diagnose_all(sources, target, mode):
    """Every complaint about these sources, by file name."""
    with ThreadPoolExecutor(2) as pool:
        complaints = pool.map(lambda source: diagnose(source, target, mode), sources)
        return {source.name: text for source, text in zip(sources, complaints) if text}
