"""What the keys do, for the scripts that write it down: docs/keys.txt, and the tables in the code.

`screens()` gives (screen, rows) in order, a row being a Row. The mixing modes and the filters' letters
come from src/px/modes.h, src/px/filters.h and the preferences as committed, for who plays from this
folder changes his own. A key that the program does not
sample, and a sampled one that no row has, end the script.
"""

import re
import subprocess
import sys
from collections import namedtuple
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
Row = namedtuple("Row", "keys pad words card")

# What the panel's labels leave open.
MODE_WORDS = {"none": "top layer alone", "alpha / chroma": "alpha, or chroma"}
# Keys that are no letter or digit, as the code and as the documents call them.
NAMED = {"UP": "Up", "RIGHT": "Right", "DOWN": "Down", "LEFT": "Left", "TAB": "Tab", "SPACE": "Space",
         "RETURN": "Return", "BACKSPACE": "Backspace"}
# Read as typed on the page of a playlist's name, where they need no slot.
TYPED = {"Escape"}


def source(path):
    return (ROOT / path).read_text(encoding="utf-8")


def modes():
    """(key, label of the panel's button), in the order of the keys."""
    rows = re.findall(r'\{MODE_\w+, +KEY_\w+, "(.*?)", +"(.*?)", +(?:"(.*?)"|nullptr)\}',
                      source("src/px/modes.h"))
    return [(cap, " ".join(filter(None, label))) for cap, *label in rows]


def filter_names():
    """id: name."""
    text = source("src/px/filters.h")
    ids = {name: int(number) for name, number in re.findall(r"(FILTER_\w+) = (\d+)", text)}
    return {ids[which]: name for which, name in re.findall(r'\{(FILTER_\w+), +"(.*?)"\}', text)}


def filters():
    """(letter, name of the filter that the preferences that come along put there)."""
    letters = re.findall(r"KEY_FILTER_(\w) =", source("src/common/slots.h"))
    preferences = subprocess.run(["git", "show", "HEAD:userdata/prefs.xml"], cwd=ROOT, check=True,
                                 capture_output=True, text=True).stdout
    slots = re.findall(r"<filter>(\d+)</filter>", preferences)
    names = filter_names()
    return [(letter, names[int(slot)]) for letter, slot in zip(letters, slots, strict=True)]


def sampled():
    """The keys that the program looks at."""
    keys = re.findall(r"\{KEY_\w+, +SDLK_(\w+)\}", source("src/input/keys.cpp"))
    return {NAMED.get(key, key.upper()) for key in keys}


def named_keys(text):
    """The keys that `text` names."""
    words = set(re.findall(r"[A-Za-z0-9]+", text))
    known = {*NAMED.values(), *TYPED} | {word for word in words if re.fullmatch(r"[A-Z0-9]", word)}
    return {"Up", "Right", "Down", "Left"} if words & {"arrows"} else words & known


def mode_rows():
    return [Row(key, "", MODE_WORDS.get(label, label), "") for key, label in modes()]


def rows_of(line):
    if line == "MODES":
        return mode_rows()
    cells = [cell.strip() for cell in line.split("|")]
    keys = cells[0].replace("LETTERS", " ".join(letter for letter, _ in filters()))
    return [Row(keys, *cells[1:], *[""] * (4 - len(cells)))]


def screens():
    result = []
    for line in source("docs/keys.txt").splitlines():
        if line.startswith("["):
            result.append((line.strip("[]"), []))
        elif line and not line.startswith("#"):
            result[-1][1].extend(rows_of(line))
    told = {key for _, rows in result for row in rows for key in named_keys(row.keys)} - TYPED
    if told != sampled():
        sys.exit(f"docs/keys.txt and src/input/keys.cpp differ in {sorted(told ^ sampled())}")
    return result


def mix_rows():
    """Of the mix screen, and of all screens, which come first."""
    everywhere, *_ = listed = screens()
    return [*everywhere[1], *dict(listed)["mix"]]


def other_screens():
    return [(name, rows) for name, rows in screens()[1:] if name != "mix"]
