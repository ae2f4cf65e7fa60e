"""The help of a program, read into parts: what manual page and completions are made from, so that they cannot disagree
with it."""
import re
import subprocess
import textwrap
from dataclasses import dataclass, field

COLUMN = 30  # where the help's explanations begin


@dataclass
class Entry:
    """An option, a word or a command: how it is written ("--user NAME"), and what it is."""
    form: str
    lines: list = field(default_factory=list)

    @property
    def name(self):
        return self.form.split()[0].split("=")[0].split(",")[-1]

    @property
    def value(self):
        """What an option takes, such as "FILE" or "on|off"; empty for a switch."""
        words = self.form.split()
        return words[1].split("=")[0] if len(words) > 1 and words[1] not in ("REQUIRED", "...") else ""

    @property
    def text(self):
        return " ".join(self.lines)


@dataclass
class Help:
    path: str  # "window create"; empty for the program
    about: str = ""
    usage: str = ""
    parts: dict = field(default_factory=dict)  # "Options" and the like: entries
    notes: dict = field(default_factory=dict)  # "Examples" and the like: lines

    @property
    def words(self):
        """The words that a command takes, one by one."""
        return self.usage.partition("[OPTIONS]")[2].replace("[SUBCOMMAND]", "").split()


def run(program, *words):
    return subprocess.run([program, *words], check=True, capture_output=True, text=True).stdout


def read_entries(lines):
    entries = []
    for number, line in enumerate(lines):
        if line[:COLUMN].strip() == "":
            entries[-1].lines.append(line.strip())
        elif line[COLUMN - 2:COLUMN] == "  " or (line[COLUMN - 1:COLUMN] == " " and not
                                                  "".join(lines[number + 1:number + 2]).startswith(" " * COLUMN)):
            entries.append(Entry(line[:COLUMN].strip(), [line[COLUMN:].strip()]))
        else:
            entries.append(Entry(line.strip()))
    return entries


def read_help(program, path=""):
    found, title = Help(path), None
    for line in run(program, *path.split(), "--help").rstrip().splitlines():
        if line.startswith("Usage: "):
            found.usage = line.removeprefix("Usage: ")
        elif re.fullmatch("[A-Z][A-Za-z ]*:", line):
            title = line[:-1]
            found.notes[title] = []
        elif title is None:
            found.about += (" " if found.about else "") + line.strip()
        else:
            found.notes[title].append(line)
    for title in ("Positionals", "Options", "Subcommands"):
        found.parts[title] = read_entries([line for line in found.notes.pop(title, []) if line.strip()])
    found.about = found.about.strip()
    return found


def read_all(program):
    """The program's help and, in order, that of its commands; a group ("window") comes before them."""
    helps = [read_help(program)]
    for one in helps:  # which grows
        place = helps.index(one) + 1
        helps[place:place] = [read_help(program, f"{one.path} {command.name}".strip()) for command in one.parts["Subcommands"]]
    return helps


def fold(command, width):
    """A command line, folded as a shell reads it."""
    lines = textwrap.wrap(command, width - 2, break_long_words=False, break_on_hyphens=False, subsequent_indent="    ")
    return [line + " \\" for line in lines[:-1]] + lines[-1:]
