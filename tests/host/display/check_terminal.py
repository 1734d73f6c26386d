"""check_terminal.py PROGRAM: what the display looks like on a terminal, in a file, while the terminal
changes its size."""

import fcntl
import os
import pty
import re
import struct
import subprocess
import sys
import termios

PROGRAM = sys.argv[1]
faults = []


def expect(what, seen, wanted):
    if seen != wanted:
        faults.append(f"{what}:\n  seen   {seen!r}\n  wanted {wanted!r}")


class Terminal:
    """As much of one as the display needs. On a change of its width it cuts lines, as many do."""

    def __init__(self, columns, rows):
        self.columns, self.rows = columns, rows
        self.cells = [[" "] * columns for _ in range(rows)]
        self.row = self.column = 0
        self.gone = []
        self.coloured = False

    def resize(self, columns, rows):
        self.cells = [(line + [" "] * columns)[:columns] for line in self.cells]
        while rows < len(self.cells):
            self.gone.append(self.cells.pop(0))
            self.row = max(0, self.row - 1)
        self.cells += [[" "] * columns for _ in range(rows - len(self.cells))]
        self.columns, self.rows = columns, rows
        self.column = min(self.column, columns - 1)

    def next_row(self):
        self.row += 1
        if self.row == self.rows:
            self.gone.append(self.cells.pop(0))
            self.cells.append([" "] * self.columns)
            self.row -= 1

    def write(self, text):
        for sequence, number, kind, character in re.findall(
                r"(\x1b\[([0-9;]*)([A-Za-z]))|([^\x1b])", text, re.S):
            if sequence:
                self.do(kind, number)
            elif character == "\r":
                self.column = 0
            elif character == "\n":
                self.next_row()
            else:
                self.put(character)
        if re.search(r"\x1b(?!\[[0-9;]*[AJm])", text):
            faults.append(f"a sequence that nobody knows: {text!r}")

    def do(self, kind, number):
        if kind == "A":
            self.row = max(0, self.row - int(number or 1))
        elif kind == "J":
            self.cells[self.row][self.column:] = [" "] * (self.columns - self.column)
            for line in range(self.row + 1, self.rows):
                self.cells[line] = [" "] * self.columns
        elif kind == "m":
            self.coloured = True

    def put(self, character):
        if self.column == self.columns:
            faults.append("a line is wider than the terminal")
            self.column = 0
            self.next_row()
        self.cells[self.row][self.column] = character
        self.column += 1

    def seen(self):
        lines = ["".join(line).rstrip() for line in self.gone + self.cells]
        return [re.sub(" {2,}", "  ", line) for line in lines if line]


class Show:
    """The program, on a terminal of that size or with its output in a pipe."""

    def __init__(self, columns=0, rows=24, **environment):
        environment = {"TERM": "xterm", **environment}
        self.terminal = Terminal(columns, rows) if columns else None
        shown, tell = os.pipe()
        self.shown = shown
        if self.terminal:
            self.output, slave = pty.openpty()
            self.set_size(columns, rows)
        else:
            self.output, slave = os.pipe()
        self.process = subprocess.Popen(
            [PROGRAM, str(tell)], stdin=subprocess.PIPE, stdout=slave, stderr=slave,
            pass_fds=(tell,), env=environment)
        os.close(slave)
        os.close(tell)
        os.set_blocking(self.output, False)
        self.text = ""

    def set_size(self, columns, rows):
        fcntl.ioctl(self.output, termios.TIOCSWINSZ, struct.pack("HHHH", rows, columns, 0, 0))

    def resize(self, columns, rows=24):
        self.set_size(columns, rows)
        self.terminal.resize(columns, rows)

    def do(self, *lines):
        for line in lines:
            self.process.stdin.write(line.encode() + b"\n")
            self.process.stdin.flush()
            if os.read(self.shown, 1) != b".":
                raise EOFError("the program has gone")
            self.read()
        return self.terminal.seen() if self.terminal else self.text

    def read(self):
        while True:
            try:
                chunk = os.read(self.output, 65536)
            except (BlockingIOError, OSError):
                return
            if not chunk:
                return
            self.text += chunk.decode()
            if self.terminal:
                self.terminal.write(chunk.decode())

    def end(self):
        self.process.stdin.close()
        if self.process.wait(20) != 0:
            faults.append("the program failed")
        os.close(self.output)
        os.close(self.shown)


def check_a_run():
    show = Show(80)
    expect("it begins", show.do("begin 1 Memory Test"), ["Memory Test  0%  0:00  1:00 left"])
    expect("it goes on", show.do("later 30", "progress 1 50"),
           ["Memory Test  50%  0:30  0:30 left"])
    expect("time goes on", show.do("later 3", "tick"), ["Memory Test  50%  0:33  0:27 left"])
    expect("it passed", show.do("pass 1 1 of 2"), ["Memory Test  Pass  0:05  1 of 2"])
    expect("two at once", show.do("begin 2 Processor Test", "begin 3 Disk Check")[1:],
           ["Processor Test  0%  0:00  1:00 left", "Disk Check  0%  0:00  1:00 left"])
    expect("an error between", show.do("error 3 signal 11")[1:],
           ["diags: Disk Check: signal 11", "Processor Test  0%  0:00  1:00 left",
            "Disk Check  0%  0:00  1:00 left"])
    expect("the end", show.do("fail 3", "pass 2", "over"),
           ["Memory Test  Pass  0:05  1 of 2", "diags: Disk Check: signal 11",
            "Disk Check  Fail  0:05", "Processor Test  Pass  0:05",
            "3 tests: 2 passed, 1 failed, 0 without a verdict"])
    expect("colours", show.terminal.coloured, True)
    show.end()


def check_sizes():
    show = Show(80)
    show.do("begin 1 Memory Test", "pass 1", "begin 2 Processor Test", "begin 3 Disk Check")
    for columns in (60, 33, 20, 100, 12, 80):
        show.resize(columns)
        seen = show.do("later 1", "tick")
        expect(f"lines at {columns} columns", len(seen), 3)
        expect(f"the name at {columns} columns", seen[0][:6], "Memory")
    show.resize(80, 3)
    expect("three rows", show.do("begin 4 d", "begin 5 e", "tick")[-1], "... and 3 more")
    show.end()


def check_the_bottom():
    """Lines that scroll away stay as they are."""
    show = Show(80, 5)
    wanted = []
    for i in range(1, 21):
        show.do(f"begin {i} test {i}", f"pass {i}")
        wanted.append(f"test {i}  Pass  0:05")
    expect("scrolled", show.do("over"),
           wanted + ["20 tests: 20 passed, 0 failed, 0 without a verdict"])
    show.end()


PLAIN = "Test: Memory Test\nPercent Complete: 50%\nVerdict: Pass - 1 of 2\n"


def check_plain():
    script = ("begin 1 Memory Test", "later 2", "progress 1 50", "pass 1 1 of 2", "over")
    show = Show()
    expect("a pipe", show.do(*script), PLAIN)
    show.end()
    show = Show(80, TERM="dumb")
    show.do(*script)
    expect("a dumb terminal", show.text.replace("\r\n", "\n"), PLAIN)
    show.end()
    show = Show(80, NO_COLOR="1")
    show.do(*script)
    expect("no colour", (show.terminal.coloured, show.terminal.seen()),
           (False, ["Memory Test  Pass  0:05  1 of 2"]))
    show.end()


for check in (check_a_run, check_sizes, check_the_bottom, check_plain):
    check()
for fault in faults:
    print(fault)
sys.exit(1 if faults else 0)
