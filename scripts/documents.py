"""What scripts/documents does once the command is built.

Four kinds of text are held against real runs, each document on stores of its own:
- in docs/operations.md, a diagram below a comment that names the commands it is drawn from;
- in docs/command.md, a block that begins with `$ paylevenkit`, in the order of the document;
- in docs/failures.md, a row of a table whose commands can be typed;
- in docs/server.md, a line for curl, behind which a comment has the status and the beginning of the
  reply.

Calls of the two services overlap, so the order of lines is not compared, nor are the rails beside them.
"""
import argparse
import collections
import contextlib
import json
import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import tempfile

DOCS = pathlib.Path(__file__).resolve().parent.parent / "docs"
BEFORE = {"F": "sign-in guest@example.com", "C": "sign-in guest@example.com; add --test-card visa"}
# Of what the manual's server prints, and of a real one.
PORTS = {"console": "127.0.0.1:8080", "backend": "127.0.0.1:8081", "provider": "127.0.0.1:8082"}
CHANCE = [(r"\b(snp|sbx)_[a-z]+", r"\1_…"), (r"(127\.0\.0\.1):\d+", r"\1"), (r"\b\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ", "TIME"),
          (r"[┌│└·] ?", ""), (r" {2,}", "  ")]

# What a row of the table of failures claims, and what the last command must print for it.
CLAIMS = {
    r"nothing logged": lambda out: "kit → log" not in out,
    r"(?<!nothing )logged": lambda out: "kit → log" in out,
    r"never called|no completion": lambda out: "never completes" in out or "whether it ends" in out,
    r"provider's error, wrapped": lambda out: "The payment provider answered" in out,
    r"backend's error": lambda out: "HLVBackendErrorDomain" in out,
    r"error that was stored last": lambda out: "HLVURLErrorDomain" in out or "PLVErrorDomain" in out,
    r"the instrument stays": lambda out: "1 does not match." in out,
    r"nothing (is removed|reaches the backend)": lambda out: not re.search(
        r"kit → (provider .* remove|backend .* add)", out),
    r"nothing is removed": lambda out: "removePaymentInstrument" not in out,
    r"everything is removed": lambda out: "removePaymentInstrument" in out,
    r"nothing happens": lambda out: "kit → app" not in out and "kit → backend" not in out,
    r"the guest and no error|still succeeds|; success|one card|the instrument, none": lambda out: "error HLV" not in out,
    r"no card and no error|no guest, no card": lambda out: "no card came back" in out,
    r"passed over": lambda out: "identifier" in out,
}


class Store:
    """Runs the command on a fresh store, which goes away with this object."""

    def __init__(self, command):
        self.command = command
        self.folder = tempfile.mkdtemp(prefix="documents-")
        self.environment = {**os.environ, "LANG": "C.UTF-8", "NO_COLOR": "1", "COLUMNS": "200"}
        self.server, self.addresses, self.snapshot = None, {}, ""

    def __enter__(self):
        return self

    def __exit__(self, *ignored):
        if self.server:
            self.end()
        shutil.rmtree(self.folder)

    def run(self, line):
        """What one command prints; ID stands for the first card's identifier."""
        if re.search(r"\bID\b", line):
            cards = json.loads(self.output("cards --json"))["backend"]
            line = re.sub(r"\bID\b", cards[0]["id"] if cards else "crd_none", line)
        return self.output(line)

    def output(self, line):
        for name, address in self.addresses.items():
            line = line.replace(PORTS[name], address)
        line = re.sub(r"\bsnp_[a-z]+", self.snapshot, line)
        run = subprocess.run([self.command, "--store", f"{self.folder}/store.sqlite",
                              *shlex.split(line)], env=self.environment, capture_output=True,
                             text=True, stdin=subprocess.DEVNULL)
        printed = run.stderr + run.stdout
        self.snapshot = (re.findall(r"\bsnp_[a-z]+", printed) or [self.snapshot])[-1]
        for name, address in self.addresses.items():
            printed = printed.replace(address, PORTS[name])
        return printed

    def run_all(self, lines):
        printed = ""
        for line in filter(None, (one.strip() for one in lines.split(";"))):
            printed = self.run(line)
        return printed

    def serve(self):
        self.server = subprocess.Popen(
            [self.command, "--store", f"{self.folder}/served.sqlite", "serve"],
            env=self.environment, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
        printed = ""
        for line in self.server.stderr:
            printed += line
            if found := re.match(r"(\w+) +http://(\S+)$", line):
                self.addresses[found[1]] = found[2]
            if len(self.addresses) == len(PORTS):
                return printed
        raise SystemExit("The server did not start.")

    def end(self):
        """Ends the server and returns its exit status."""
        self.server.terminate()
        return self.server.wait()


class Document:
    def __init__(self, name, record):
        self.path, self.record = DOCS / name, record
        self.text = self.path.read_text()
        self.faults, self.replacements = [], []

    def blocks(self, opening):
        """The matches of all blocks, each with its comment before and its body."""
        pattern = re.compile(r"(?:<!-- (?P<comment>[^>]*) -->\n)?^```" + opening + r"\n(?P<body>.*?)^```",
                             re.M | re.S)
        return list(pattern.finditer(self.text))

    def compare(self, block, printed):
        """Notes a block that differs: to be replaced when recording, and otherwise as a fault."""
        old, new = shape(block["body"]), shape(printed)
        if block["body"].rstrip().endswith("…"):  # The beginning stands for all.
            old.subtract(["…"])
            new = new & old
        if +old == +new:
            return
        if self.record:
            self.replacements.append((block.span("body"), printed))
            return
        line = self.text.count("\n", 0, block.start("body")) + 1
        missing = "\n".join(f"  - {one}" for one in (old - new)) + "\n" + "\n".join(
            f"  + {one}" for one in (new - old))
        self.faults.append(f"{self.path.name}:{line}: the block differs from the run\n{missing}")

    def finish(self):
        """Writes what is to be replaced, the last first, since that moves no other."""
        for (start, end), body in reversed(self.replacements):
            self.text = self.text[:start] + body + self.text[end:]
        if self.replacements:
            self.path.write_text(self.text)
        return self.faults


def shape(text):
    """The lines without what is chance, in no order."""
    for pattern, replacement in CHANCE:
        text = re.sub(pattern, replacement, text)
    return collections.Counter(line.strip() for line in text.strip().splitlines())


def check_manual(command, record):
    document = Document("command.md", record)
    with contextlib.ExitStack() as stores:
        for block in document.blocks(""):
            first = block["body"].split("\n", 1)[0]
            comment = block["comment"] or ""
            if not first.startswith("$ paylevenkit") or comment == "not run":
                continue
            if comment == "on a fresh store":
                store = stores.enter_context(Store(command))
            line = first.removeprefix("$ paylevenkit ")
            if comment.startswith("run instead: "):
                line = comment.removeprefix("run instead: ")
            printed = store.serve() if line == "serve" else store.run(line)
            document.compare(block, first + "\n" + printed)
    return document.finish()


def diagram(timeline):
    """A sequence diagram in Mermaid of the events of one operation."""
    lines = ["sequenceDiagram", "  participant app", "  participant kit", "  participant backend",
             "  participant provider"]
    for event in timeline:
        if event["what"] == "registerWithAPIKey" or event["to"] not in ("app", "kit", "backend",
                                                                        "provider"):
            continue
        text = event["what"] + (f": {event['result']}" if event["result"] else "")
        arrow = "-->>" if event["result"] else "->>"
        lines.append(f"  {event['from']}{arrow}{event['to']}: {text}")
    return "\n".join(lines) + "\n"


def check_diagrams(command, record):
    document = Document("operations.md", record)
    for block in document.blocks("mermaid"):
        commands = block["comment"].removeprefix("drawn from: ")
        with Store(command) as store:
            timeline = json.loads(store.run_all(f"--seed 7 {commands} --json"))["timeline"]
        document.compare(block, diagram(timeline))
    return document.finish()


def rows(text):
    """Yields (line number, cells by the table's headers)."""
    headers = None
    for number, line in enumerate(text.splitlines(), 1):
        if not line.startswith("|"):
            headers = None
            continue
        cells = [cell.strip() for cell in line.strip("|").split("|")]
        if headers is None:
            headers = cells
        elif not set(line) <= set("|-"):
            yield number, dict(zip(headers, cells))


def claims_of(headers, outcome):
    """Each claim with whether it holds of what was printed."""
    if headers[-1] == "guest, card, error":
        guest, card, error = outcome.split(", ")
        call = re.compile(r"kit → app .*")
        said = lambda out: call.findall(out)[-1]
        return {"guest": lambda out: ("guest" in said(out)) == (guest == "guest"),
                "card": lambda out: ("card crd_" in said(out)) == (card == "card"),
                "error": lambda out: ("error " in said(out)) == (error != "none")}
    claims = {text: holds for text, holds in CLAIMS.items() if re.search(text, outcome)}
    for quoted in re.findall(r'"([^"]+)"|`([^`/]+)`(?: (\d+))?', outcome):
        text = quoted[0] or " ".join(filter(None, quoted[1:]))
        claims[text] = lambda out, text=text: text in out
    return claims


def check_failures(command):
    faults, checked, claims = [], 0, {}
    subcommands = set(re.findall(r"^  ([a-z-]+) ", subprocess.run(
        [command, "--help"], capture_output=True, text=True).stdout, re.M))
    for number, row in rows((DOCS / "failures.md").read_text()):
        headers = list(row)
        outcome = row[headers[-1]]
        claims = claims if outcome == "the same" else claims_of(headers, outcome)
        before = row.get("before", "")
        for commands in re.findall(r"`([^`]+)`", row.get("how to force it", "")):
            words = shlex.split(commands, posix=False)
            is_typed = words[0] in subcommands or words[0].startswith("--")
            if before not in BEFORE or not is_typed or "arm" in words and ";" not in commands:
                continue
            if not claims:
                faults.append(f"failures.md:{number}: nothing in the last cell can be checked")
            with Store(command) as store:
                store.run_all(BEFORE[before])
                printed = store.run_all(commands)
            checked += 1
            faults += [f"failures.md:{number}: `{commands}` does not show: {claim}\n{printed}"
                       for claim, holds in claims.items() if not holds(printed)]
    if checked < 40:
        faults.append(f"failures.md: only {checked} commands were found")
    return faults


def check_curl(command):
    lines = [line for block in Document("server.md", False).blocks("sh")
             for line in block["body"].splitlines()]
    script = ""
    for line in lines:
        report = f"|| printf '%s\\n' {shlex.quote('server.md: ' + line)} \"$(cat status answer)\"\n"
        if line.startswith("curl "):
            script += f"{line} -o answer -w '%{{http_code}} ' >status\n"
        elif line.startswith("# "):
            script += f"[[ $(cat status answer) == {shlex.quote(line[2:])}* ]] {report}"
        elif re.match("[A-Z]+=|grep ", line):
            script += f"{line} {report}"
    with Store(command) as store:
        store.serve()
        urls = {name: f"http://{address}" for name, address in store.addresses.items()}
        ports = pathlib.Path(store.folder, "served.sqlite.ports.json")
        faults = [] if json.loads(ports.read_text()) == urls else ["the ports file has other URLs"]
        run = subprocess.run(["bash", "-c", script], cwd=store.folder, capture_output=True, text=True,
                             env={**os.environ, **{name.upper(): url for name, url in urls.items()}})
        faults += (run.stdout + run.stderr).splitlines()
        if store.end() != 0 or ports.exists():
            faults.append("the server does not end in order")
    if script.count("[[") < 60:
        faults.append("server.md: too few examples were found")
    return faults


def main():
    parser = argparse.ArgumentParser(prog="scripts/documents", description=(
        "Holds what the documents print against real runs of the command."))
    parser.add_argument("--command", required=True, help="the paylevenkit to run")
    parser.add_argument("--record", action="store_true", help="write what was printed instead")
    given = parser.parse_args()
    command = os.path.abspath(given.command)
    faults = check_manual(command, given.record)
    faults += check_diagrams(command, given.record)
    faults += check_failures(command)
    faults += check_curl(command)
    print("\n".join(faults) or "Every block, diagram, row and example is as it really runs.")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
