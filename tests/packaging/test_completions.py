"""The shells' completions know every option that the program's help knows, and no other."""

import os
import re
import subprocess
import unittest
from pathlib import Path

PACKAGING = Path(__file__).resolve().parents[2] / "packaging"
BASH = PACKAGING / "harbor-tray.bash-completion"


def options_of_help():
    answer = subprocess.run([os.environ["HARBOR_TRAY"], "--help"], capture_output=True, text=True, check=True)
    return set(re.findall(r"--[a-z]+", answer.stdout))


def bash_offers(*words):
    """What bash would offer for the last of the words."""
    script = (
        f'source "$0"; COMP_WORDS=(harbor-tray "$@"); COMP_CWORD={len(words)}; _harbor_tray; '
        'printf "%s\\n" "${COMPREPLY[@]}"'
    )
    answer = subprocess.run(["bash", "-c", script, str(BASH), *words], capture_output=True, text=True, check=True)
    return set(answer.stdout.split())


class Completions(unittest.TestCase):
    def test_of_bash_offer_every_option(self):
        offered = bash_offers("") | bash_offers("--measure", "") | bash_offers("--related", "/", "")
        self.assertEqual(offered, options_of_help())
        self.assertEqual(bash_offers("--me"), {"--measure"})

    def test_of_zsh_name_every_option(self):
        lines = (PACKAGING / "harbor-tray.zsh-completion").read_text().splitlines()
        self.assertEqual(lines[0], "#compdef harbor-tray")
        # An option stands before its description in brackets, perhaps among braces.
        named = {name for line in lines for name in re.findall(r"(--[a-z]+)\}?'?\[", line)}
        self.assertEqual(named, options_of_help())

    def test_of_fish_name_every_option(self):
        lines = (PACKAGING / "harbor-tray.fish").read_text().splitlines()
        named = set()
        for line in lines:
            # The condition in quotes names options as well.
            offer = re.sub(r"'[^']*'", "", line)
            if line.startswith("complete -c harbor-tray"):
                named |= {f"--{name}" for name in re.findall(r" -l ([a-z]+)", offer)}
        self.assertEqual(named, options_of_help())


if __name__ == "__main__":
    unittest.main()
