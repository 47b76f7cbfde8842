"""Runs the built command without a terminal, as a program would, on a store of its own."""
import json
import os
import pathlib
import re
import shlex
import subprocess
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
GAPS = "[ _./-]*"
# Two published American Express numbers: their four-digit codes cannot be mistaken for the
# milliseconds of a log line.
TYPED = {"371449635398431": "7913", "378734493671000": "8642"}
TEST_CARDS = re.findall(r'"(\d{14,19})"', (ROOT / "Sandbox/Cards/TestCards.cpp").read_text())


def card_data(number, code=None):
    """Finds more of a number than the last four digits that the mask leaves, or than chance makes of a
    date; and the code as a number of its own."""
    runs = [number[at:at + 5] for at in range(len(number) - 4)]
    runs += [GAPS.join(number[at:at + 8]) for at in range(len(number) - 7)]
    runs.append(r"(?<!\d)" + GAPS.join(number[:6]))
    if code:
        runs.append(rf"(?<!\d)(?<!\d\.){code}(?!\d)")
    return re.compile("|".join(runs).encode())


SEARCHES = [card_data(*card) for card in [*TYPED.items(), *((number,) for number in TEST_CARDS)]]


class Command:
    """The command with a folder that goes away with this object, and a store in it.

    Nothing that it prints or leaves may hold the number of a test card, nor what is typed of others.
    """

    def __init__(self, program, before=""):
        self.program, self.kept = os.path.abspath(program), tempfile.TemporaryDirectory()
        self.folder = pathlib.Path(self.kept.name)
        self.store = self.folder / "store.sqlite"
        self.arguments, self.server = ["--store", str(self.store)], None
        self.environment = os.environ | {"LC_ALL": "C.UTF-8", "COLUMNS": "200",
                                         "XDG_DATA_HOME": self.kept.name}
        self.run_all(before)

    def __enter__(self):
        return self

    def __exit__(self, *ignored):
        if self.server:
            self.end()
        self.kept.cleanup()

    def start(self, line, *before, **options):
        """A line as it is typed to a shell, in a process."""
        return subprocess.Popen([*before, self.program, *self.arguments, *shlex.split(line)],
                                cwd=self.folder, env=self.environment, text=True, **options)

    def run(self, line, typed="", stdout=subprocess.PIPE):
        """Returns the process that has ended, with `out` and `err`. ID is the first card's identifier."""
        if re.search(r"\bID\b", line):
            cards = json.loads(self.run("cards --json").out)["backend"]
            line = re.sub(r"\bID\b", cards[0]["id"] if cards else "crd_none", line)
        process = self.start(line, start_new_session=True, stdin=subprocess.PIPE, stdout=stdout,
                             stderr=subprocess.PIPE)
        process.out, process.err = process.communicate(typed)
        self.search(f"{process.out}{process.err}".encode())
        for path in self.folder.rglob("*"):
            if path.is_file():
                self.search(path.read_bytes(), path)
        return process

    def run_all(self, lines):
        """Lines with semicolons between them. Returns how the last one ended."""
        last = None
        for line in filter(None, (one.strip() for one in lines.split(";"))):
            last = self.run(line)
        return last

    def serve(self, options=""):
        """Starts a server on a store of its own, and returns what it prints: names and URLs."""
        self.server = self.start(f"--store {self.folder}/served.sqlite {options} serve",
                                 stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
        return "".join(self.server.stderr.readline() for _ in range(3))

    def end(self):
        """Ends the server and returns its exit status."""
        self.server.terminate()
        self.server.stderr.close()
        status, self.server = self.server.wait(), None
        return status

    @staticmethod
    def search(content, place="what is printed", searches=SEARCHES):
        # The system chooses the ports, and some are five digits of a card.
        content = re.sub(rb"(?<=127\.0\.0\.1:)\d{1,5}(?!\d)", b"", content)
        digits = b"\n".join(re.findall(rb"\d[\d _./-]{2,}", content))
        if any(each.search(digits) for each in searches):
            raise AssertionError(f"card data in {place}")
