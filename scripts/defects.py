"""What scripts/defects does once everything is installed."""
import sys

from kit_copies import ROOT, WATCHERS, verdicts


class Defect:
    def __init__(self, title):
        self.title, self.file, self.lines = title, None, {"-": [], "+": []}

    def __call__(self, text):
        old, new = ("\n".join(self.lines[sign]) for sign in "-+")
        return text.replace(old, new) if text.count(old) == 1 else None


def read_defects(words):
    defects = []
    for line in (ROOT / "Tests/Defects/defects.txt").read_text().splitlines():
        if line.startswith("#") or not line:
            continue
        if line.startswith("@ "):
            defects[-1].file = line[2:]
        elif line[0] in "-+":
            defects[-1].lines[line[0]].append(line[1:])
        else:
            defects.append(Defect(line))
    return [one for one in defects if all(word in one.title for word in words)]


def main():
    defects = read_defects(sys.argv[1:])
    missed = 0
    for defect, verdict in verdicts(defects, WATCHERS):
        missed += verdict not in WATCHERS
        print(f"{verdict:14}  {defect.title}", flush=True)
    print(f"{len(defects) - missed} of {len(defects)} caught; the clean tree has none.")
    return 1 if missed or not defects else 0


if __name__ == "__main__":
    sys.exit(main())
