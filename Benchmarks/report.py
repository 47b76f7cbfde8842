"""Measures the kit and compares with the budgets on record.

Usage: report.py PROGRAMS SHARED_PROGRAMS OBJC_PROGRAMS [--record VERSION]
"""
import argparse
import sys
from pathlib import Path

import measure

HERE = Path(__file__).parent
COLUMNS = {"text": "rest.text", "instructions": "first-card.instructions",
           "allocations": "first-card.allocations", "final-10": "synchroniser-10.final",
           "final-100": "synchroniser-100.final", "final-1000": "synchroniser-1000.final"}


def rows(file, columns=0):
    """The lines of one of our text files in columns; the last one may hold spaces."""
    lines = file.read_text().splitlines() if file.exists() else []
    return [line.split(None, columns - 1) for line in lines if line and line[0] != "#"]


def verdict(figures, budget, rule):
    """Nothing when the figure passes, or what is wrong with it or with the budget."""
    figure, floor = figures[0], {"exact": budget, "count": budget / 2}.get(rule, budget / 4)
    if rule == "median" and figures[2] - figures[1] > budget:
        return "UNCLEAR"
    if figure > budget:
        return "BROKEN"
    if figure < floor:
        return "BROKEN" if rule == "exact" else "TOO GENEROUS"
    return ""


def compare(figures):
    """Prints the table and returns how many rows fail."""
    failures = 0
    form = "{:<30} {:>10} {:>8} {:<4}{:<14}{}"
    print(form.format("measure", "figure", "budget", "", "verdict", ""))
    for name, budget, rule, unit, text in rows(HERE / "budgets.txt", 5):
        measured = figures[name]
        wrong = verdict(measured, float(budget), rule)
        failures += bool(wrong)
        if rule == "median":
            text += f", 95 % within {measured[1]:g} to {measured[2]:g}"
        print(form.format(name, f"{measured[0]:.6g}", budget, "" if unit == "-" else unit,
                          wrong or "ok", text))
    return failures


def record(version, figures):
    """Adds or replaces the row of one release, and draws all of them."""
    file = HERE / "releases.txt"
    releases = {name: values for name, *values in rows(file)}
    releases[version] = [f"{figures[name][0]:.6g}" for name in COLUMNS.values()]
    lines = ["# What each release costs; scripts/bench --record VERSION writes it. Text in bytes,",
             "# instructions and allocations of a first card, final steps in microseconds.",
             "# version " + " ".join(COLUMNS)]
    lines += [" ".join([name, *values]) for name, values in releases.items()]
    file.write_text("\n".join(lines) + "\n")
    measure.run("gnuplot", HERE / "cost.gnuplot")


def main():
    arguments = argparse.ArgumentParser()
    arguments.add_argument("programs", type=Path)
    arguments.add_argument("shared", type=Path)
    arguments.add_argument("objc", type=Path)
    arguments.add_argument("--record", metavar="VERSION")
    given = arguments.parse_args()

    figures = measure.everything(given.programs, given.shared, given.objc)
    failures = compare(figures)
    if given.record:
        record(given.record, figures)
    if failures:
        sys.exit(f"{failures} of the budgets do not hold.")


if __name__ == "__main__":
    main()
