"""Finds blocks that keep their owner alive: a block that goes to a timer, a monitor, a queue or an observer lives as long
as those do, so it may name its object only through a weak variable, and a C++ object or one of its members not at all."""

import re

# What a block's body may not name: the object, the C++ object, an instance variable (_name), a data member (name_).
STRONG_NAMES = re.compile(r"\bself\b|\bthis\b|(?<![\w.>])_[a-z]\w*|(?<![\w.])[a-z]\w*_(?!\w)")
# Another name for the object, under which a block would keep it alive.
SECOND_NAME = re.compile(r"(__weak\s+)?\b[A-Za-z]\w*\s*\*?\s*(?:const\s+)?\b(\w+)\s*=\s*self\s*;")
# A lambda that runs later has the same duty; it names in its captures what it keeps.
LATER_LAMBDA = re.compile(r"\bonMainRunLoop\(\s*\[([^\]]*)\]")


def without_comments_and_texts(source):
    """The same text with comments and the insides of literals blanked, so that places stay where they are."""
    pattern = re.compile(r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"|(?<![0-9a-fA-F])\'(?:\\.|[^\'\\\n])*\'', re.S)
    return pattern.sub(lambda match: re.sub(r"[^\n]", " ", match.group()), source)


def blocks(source):
    """Start and body of each block literal, nested ones included, in a source without comments and texts."""
    for caret in re.finditer(r"\^\s*(?:[A-Za-z_][\w\s*]*)?(?:\([^(){};]*\)\s*)?\{", source):
        depth = 0
        for index in range(caret.end() - 1, len(source)):
            depth += {"{": 1, "}": -1}.get(source[index], 0)
            if depth == 0:
                yield caret.start(), source[caret.end():index]
                break


def findings(source):
    """A line for each block or later lambda that keeps its owner alive."""
    text = without_comments_and_texts(source)
    result = []
    for start, body in blocks(text):
        for name in STRONG_NAMES.finditer(body):
            result.append(f"line {text.count(chr(10), 0, start) + 1}: the block names {name.group()}")
    for name in SECOND_NAME.finditer(text):
        if not name.group(1):
            line = text.count("\n", 0, name.start()) + 1
            result.append(f"line {line}: a second name for the object is not weak: {name.group(2)}")
    for lambda_ in LATER_LAMBDA.finditer(text):
        captures = [capture.strip() for capture in lambda_.group(1).split(",")]
        for capture in captures:
            if capture in ("this", "*this", "self", "=", "&") or capture.startswith("&"):
                line = text.count("\n", 0, lambda_.start()) + 1
                result.append(f"line {line}: the lambda that runs later captures {capture}")
    return result
