"""Reads the interfaces of the seam and what the platforms implement of them."""

import pathlib
import re

ROOT = pathlib.Path(__file__).resolve().parents[2]
PLATFORM = ROOT / "src/platform"

CLASS = re.compile(r"\bclass\s+(\w+)(?:\s+final)?\s*(?::\s*([^{;]*))?\{")


def _without_comments(source):
    return re.sub(r"//[^\n]*|/\*.*?\*/", "", source, flags=re.S)


def _classes(source):
    """Name, bases and body of each class of a source."""
    source = _without_comments(source)
    for match in CLASS.finditer(source):
        depth = 1
        end = match.end()
        while depth and end < len(source):
            depth += {"{": 1, "}": -1}.get(source[end], 0)
            end += 1
        bases = re.findall(r"public\s+([\w:]+)", match.group(2) or "")
        yield match.group(1), [base.split("::")[-1] for base in bases], source[match.end():end]


def _parameters(text):
    """How many parameters a declaration's list has."""
    depth = 0
    count = 1 if text.strip() else 0
    for character in text:
        depth += {"<": 1, "(": 1, ">": -1, ")": -1}.get(character, 0)
        count += character == "," and depth == 0
    return count


DECLARATION = r"(\w+)\s*\(((?:[^()]|\([^()]*\))*)\)\s*(?:const\s*)?(?:noexcept\s*)?"


def operations_of_interfaces(source):
    """For each interface of a source its operations, as "name/number of parameters"."""
    result = {}
    for name, _, body in _classes(source):
        operations = {f"{match.group(1)}/{_parameters(match.group(2))}"
                      for match in re.finditer(r"virtual[^;{}]*?\b" + DECLARATION + r"=\s*0\s*;", body)}
        if operations:
            result[name] = operations
    return result


def overridden_operations(source):
    """For each base class the operations that the classes of a source override."""
    result = {}
    for _, bases, body in _classes(source):
        operations = {f"{match.group(1)}/{_parameters(match.group(2))}"
                      for match in re.finditer(r"\b" + DECLARATION + r"override\b", body)}
        for base in bases:
            result.setdefault(base, set()).update(operations)
    return result


def interfaces():
    """The interfaces of the seam with their operations."""
    result = {}
    for header in sorted(PLATFORM.glob("*.h")):
        result.update(operations_of_interfaces(header.read_text()))
    return result


def implementations(*folders):
    """For each interface the operations that these folders of the platform implement."""
    result = {}
    for folder in folders:
        for source in sorted(path for path in (PLATFORM / folder).rglob("*") if path.suffix in (".h", ".cpp", ".mm")):
            for base, operations in overridden_operations(source.read_text()).items():
                result.setdefault(base, set()).update(operations)
    return result
