"""check_completion.py SHELL DIAGS INSTALLATION SCRATCH: types command lines into a shell on a terminal and
presses Tab. What the command gets then is compared, so that quoting is judged by the shell itself."""

import os
import pty
import re
import select
import shutil
import subprocess
import sys
import time

SHELL, DIAGS, INSTALLATION, SCRATCH = sys.argv[1], *map(os.path.abspath, sys.argv[2:5])
PATIENCE = 30  # seconds until a shell is taken for hanging
faults = []

# Names that a provider could give its tests. What they would have a shell do is make a file.
HOSTILE = [
    "Dollar $(touch pwned),d0,$HOME",
    "Tick `touch pwned`,t0,x",
    "Quote' ; touch pwned; ',q0,x",
    'Mark" ; touch pwned; ",m0,x',
    "Semi; touch pwned;,s0,x",
    "Back\\slash \\x1b[1A,b0,x",
    "Bang !! !touch,e0,x",
    "Glob * ? [a] {b,c} ~ #,g0,x",
    "Amper & touch pwned &,a0,<y> | (z)",
    "Umlaut äöü,u0,日本",
    "Equal = a:b,c0,x",
]
TESTS = ["DIAGS: Memory Test,mem0,System Memory", *HOSTILE, "--events=pwned", "-v"]

# The command: what it is given goes to a file, the tests to whoever lists them.
RECORDER = """#!/bin/sh
if [ "$1" = --root ] && [ "$3" = list ]; then echo "Elsewhere,x0,$2"; exit; fi
if [ "$1" = list ] && [ $# = 1 ]; then [ -e hang ] && exec sleep 600; exec cat tests; fi
printf '%s\\0' "$@" >given.new; mv given.new given
"""


def prepare():
    shutil.rmtree(SCRATCH, ignore_errors=True)
    for folder in ("bin", "functions", "a folder"):
        os.makedirs(os.path.join(SCRATCH, folder))
    os.chdir(SCRATCH)
    with open("bin/diags", "w", encoding="utf-8") as file:
        file.write(RECORDER)
    os.chmod("bin/diags", 0o755)
    with open("tests", "w", encoding="utf-8") as file:
        file.write("\n".join(TESTS) + "\n")
    for name in ("my plan.toml", "my notes.txt"):
        open(name, "w").close()
    script = subprocess.run([DIAGS, "completion", SHELL], check=True, stdout=subprocess.PIPE).stdout
    with open("functions/_diags", "wb") as file:
        file.write(script)


START = {
    "bash": (["bash", "--noprofile", "--norc", "-i"], "bind 'set bell-style none'; . functions/_diags"),
    "zsh": (["zsh", "-f", "-i"],
            "unsetopt beep; fpath=($PWD/functions $fpath); autoload -U compinit; compinit -u -D"),
}


class Shell:
    """One on a terminal of its own, where completion is set up."""

    def __init__(self):
        words, setup = START[SHELL]
        self.pid, self.terminal = pty.fork()
        if self.pid == 0:
            os.environ.update(PATH=SCRATCH + "/bin:" + os.environ["PATH"], HOME=SCRATCH, TERM="dumb",
                              LC_ALL="C.UTF-8", HISTFILE="/dev/null")
            os.execvp(words[0], words)
        self.shown = b""
        self.result(f"{setup}\rdiags ready\r")

    def read(self, seconds):
        if select.select([self.terminal], [], [], seconds)[0]:
            self.shown += os.read(self.terminal, 65536)

    def result(self, keys):
        """What the command was given when these keys had been pressed."""
        if os.path.exists("given"):
            os.remove("given")
        os.write(self.terminal, keys.encode())
        end = time.monotonic() + PATIENCE
        while not os.path.exists("given"):
            if time.monotonic() > end:
                faults.append(f"nothing came of {keys!r}; the terminal shows {self.shown[-2000:]!r}")
                self.close()
                raise TimeoutError
            self.read(0.02)
        with open("given", encoding="utf-8") as file:
            return file.read().split("\0")[:-1]

    def close(self):
        os.close(self.terminal)
        os.waitpid(self.pid, 0)


def expect(shell, keys, wanted):
    # A shell may take a slash off that it put behind a folder itself.
    seen = [word.rstrip("/") for word in shell.result(f"diags {keys}\r")]
    if seen != wanted:
        faults.append(f"{keys!r}:\n  seen   {seen}\n  wanted {wanted}")


WORDS = [
    ("prov\t", ["providers"]),
    ("ver\t", ["verify"]),
    ("--no-c\tlist", ["--no-cache", "list"]),
    ("run --until\t", ["run", "--until-failure"]),
    ("run --all --level ext\t", ["run", "--all", "--level", "extended"]),
    ("run --all --level=sim\t", ["run", "--all", "--level=simple"]),
    ("results x --level imm\t", ["results", "x", "--level", "immediate"]),
    ("history --tr\t x", ["history", "--trend", "x"]),
    ("run --plan burn\t", ["run", "--plan", "burn-in"]),
    ("run --plan my\t", ["run", "--plan", "my plan.toml"]),
    ("check --root a\t", ["check", "--root", "a folder"]),
    ("verify my\\ no\t", ["verify", "my notes.txt"]),
    ("run --all --html my\\ no\t", ["run", "--all", "--html", "my notes.txt"]),
    ("completion z\t", ["completion", "zsh"]),
    # Another verb's option is none to offer.
    ("list --until\t", ["list", "--until"]),
]
MEMORY = TESTS[0]
NAMES = [
    ("run DIA\t", ["run", MEMORY]),
    ("run DIAGS\\:\\ Mem\t", ["run", MEMORY]),
    ("run \"DIAGS: Mem\t", ["run", MEMORY]),
    ("run 'DIAGS: Mem\t", ["run", MEMORY]),
    ("run DIAGS:\t", ["run", MEMORY]),
    ("run --exclude DIA\t", ["run", "--exclude", MEMORY]),
    ("results DIA\t", ["results", MEMORY]),
    ("run mem0 DIA\t --quiet", ["run", "mem0", MEMORY, "--quiet"]),
    ("--root a\\ folder run El\t", ["--root", "a folder", "run", "Elsewhere,x0,a folder"]),
    ("run --root='a folder' El\t", ["run", "--root=a folder", "Elsewhere,x0,a folder"]),
    # What a test calls itself is no option.
    ("run -- --ev\t", ["run", "--", "--ev"]),
]


def beginning(name, mark):
    """As much of it as stands for itself."""
    return re.match("[A-Za-z]+" if not mark else "[^ ]+", name)[0]


def check_names(shell):
    for keys, wanted in NAMES:
        expect(shell, keys, wanted)
    for name in HOSTILE:
        for mark in ("", "'", '"'):
            expect(shell, f"run {mark}{beginning(name, mark)}\t", ["run", name])
    # All at once, twice as one does to see them; the line is emptied then.
    shell.result("diags run \t\t\x15diags ready\r")
    # What is on the line is read, not carried out.
    shell.result("diags --root $(touch pwned) run `touch pwned` \t\x15diags ready\r")
    if os.path.exists("pwned"):
        faults.append("completion carried out what a name says")


def check_patience(shell):
    open("hang", "w").close()
    start = time.monotonic()
    expect(shell, "run DIA\t", ["run", "DIA"])
    if time.monotonic() - start > PATIENCE / 2:
        faults.append("a listing that takes for ever holds the shell up")
    os.remove("hang")


def distinct_beginning(name, names):
    """As much of it as no other one begins with."""
    others = [other for other in names if other != name]
    return next(name[:end] for end in range(1, len(name) + 1)
                if not any(other.startswith(name[:end]) for other in others))


def check_own_listing(shell):
    """The tests that the command itself lists."""
    os.environ["DIAGS_ROOT"] = INSTALLATION
    names = subprocess.run([DIAGS, "list"], check=True, stdout=subprocess.PIPE).stdout.decode().splitlines()
    with open("tests", "w", encoding="utf-8") as file:
        file.write("\n".join(names))
    name = next(name for name in names if name.startswith("DIAGS: Processor"))
    typed = re.sub("[^A-Za-z0-9]", r"\\\g<0>", distinct_beginning(name, names))
    expect(shell, f"run {typed}\t", ["run", name])


prepare()
try:
    shell = Shell()
    for keys, wanted in WORDS:
        expect(shell, keys, wanted)
    check_names(shell)
    check_patience(shell)
    check_own_listing(shell)
    shell.close()
except TimeoutError:
    pass
for fault in faults:
    print(fault)
sys.exit(1 if faults else 0)
