"""What scripts/mutants does once everything is installed."""
import argparse
import collections
import pathlib
import random
import sys

from clang.cindex import CursorKind, Index, TokenKind

from kit_copies import ROOT, WATCHERS, Copy, verdicts

FOLDERS = ["Public", "Models", "Matching", "Async", "Values", "Platform", "Host"]
EQUIVALENTS = ROOT / "Tests" / "Defects" / "equivalents.txt"
OPPOSITES = {"==": "!=", "!=": "==", "<": "<=", "<=": "<", ">": ">=", ">=": ">", "&&": "||",
             "||": "&&", "+": "-", "-": "+", "+=": "-=", "-=": "+="}
EMPTY_RETURNS = {"return", "return {}", "return false", "return nullptr", 'return ""'}
FUNCTIONS = {CursorKind.FUNCTION_DECL, CursorKind.CXX_METHOD, CursorKind.CONSTRUCTOR,
             CursorKind.FUNCTION_TEMPLATE, CursorKind.LAMBDA_EXPR}
EXPRESSION_STATEMENTS = {CursorKind.CALL_EXPR, CursorKind.BINARY_OPERATOR, CursorKind.UNARY_OPERATOR,
                         CursorKind.COMPOUND_ASSIGNMENT_OPERATOR, CursorKind.UNEXPOSED_EXPR}


class Mutant:
    def __init__(self, file, text, start, end, replacement):
        self.file, self.start, self.end, self.replacement = file, start, end, replacement
        self.line = text.count("\n", 0, start) + 1
        first, last = text.rfind("\n", 0, start) + 1, text.find("\n", end)
        # What the list of equivalents names it by; a line's number would not last.
        self.before = " ".join(text[first:last].split())
        self.after = " ".join((text[first:start] + replacement + text[end:last]).split())

    def __call__(self, text):
        return text[:self.start] + self.replacement + text[self.end:]

    def __str__(self):
        return f"{self.file}:{self.line}\n  - {self.before}\n  + {self.after}"

    def key(self):
        return f"{self.file}: {self.before} => {self.after}".rstrip()


class Finder:
    """Finds what can be changed in the function bodies of one file."""

    def __init__(self, file):
        self.file, self.text = file, (ROOT / file).read_text()
        # The offsets of clang count bytes.
        if not self.text.isascii():
            raise SystemExit(f"{file} is not in ASCII.")
        self.found, self.headers = {}, set()

    def mutants(self):
        """Sets `headers` too, to the project's own that the file includes, directly or not."""
        options = ["-xc++", "-std=c++20", f"-I{ROOT}"]
        unit = Index.create().parse(str(ROOT / self.file), options)
        for problem in unit.diagnostics:
            if problem.severity >= 3:
                raise SystemExit(f"{self.file}: {problem.spelling}")
        included = (pathlib.Path(one.include.name) for one in unit.get_includes())
        self.headers = {str(path.relative_to(ROOT)) for path in included if path.is_relative_to(ROOT)}
        for cursor in unit.cursor.get_children():
            if cursor.location.file and cursor.location.file.name == str(ROOT / self.file):
                self.visit(cursor, None, [], False)
        return list(self.found.values())

    def add(self, start, end, replacement):
        self.found.setdefault((start, end, replacement),
                              Mutant(self.file, self.text, start, end, replacement))

    def visit(self, cursor, parent, parameters, in_body):
        if cursor.kind == CursorKind.STATIC_ASSERT:
            return
        if cursor.kind in FUNCTIONS:
            parameters = [one for one in cursor.get_children() if one.kind == CursorKind.PARM_DECL]
        in_body = in_body or cursor.kind == CursorKind.COMPOUND_STMT
        if in_body:
            self.mutate(cursor, parent)
            self.take_another(cursor, parameters)
        for child in cursor.get_children():
            self.visit(child, cursor, parameters, in_body)

    def mutate(self, cursor, parent):
        kind, start, end = cursor.kind, cursor.extent.start.offset, cursor.extent.end.offset
        source = self.text[start:end]
        if kind in (CursorKind.BINARY_OPERATOR, CursorKind.COMPOUND_ASSIGNMENT_OPERATOR) or (
                kind == CursorKind.CALL_EXPR and cursor.spelling.startswith("operator")):
            self.replace_operator(cursor)
        if kind == CursorKind.UNARY_OPERATOR and source.startswith("!"):
            self.add(start, start + 1, "")
        if kind == CursorKind.CXX_BOOL_LITERAL_EXPR and source in ("true", "false"):
            self.add(start, end, "false" if source == "true" else "true")
        if kind == CursorKind.INTEGER_LITERAL and source.isdigit():
            self.add(start, end, str(int(source) + 1))
        if kind == CursorKind.STRING_LITERAL and len(source) > 2 and source.startswith('"'):
            self.add(start, end, '""')
        if kind == CursorKind.IF_STMT:
            self.negate_condition(cursor)
        if kind == CursorKind.RETURN_STMT and source not in EMPTY_RETURNS:
            self.add(start, end, "return {}")
        if kind in EXPRESSION_STATEMENTS and parent is not None and (
                parent.kind == CursorKind.COMPOUND_STMT) and self.text[end:end + 1] == ";":
            self.add(start, end + 1, "")
        if kind == CursorKind.CALL_EXPR:
            self.swap_arguments(cursor)

    def take_another(self, cursor, parameters):
        if cursor.kind != CursorKind.DECL_REF_EXPR or cursor.referenced not in parameters:
            return
        for other in parameters:
            if other != cursor.referenced and other.spelling and (
                    other.type.get_canonical().spelling ==
                    cursor.referenced.type.get_canonical().spelling):
                self.add(cursor.extent.start.offset, cursor.extent.end.offset, other.spelling)

    def replace_operator(self, cursor):
        operands = list(cursor.get_children())
        if len(operands) < 2:
            return
        lower, upper = operands[0].extent.end.offset, operands[-1].extent.start.offset
        for token in cursor.get_tokens():
            offset = token.extent.start.offset
            if token.kind == TokenKind.PUNCTUATION and lower <= offset < upper:
                if token.spelling in OPPOSITES:
                    self.add(offset, token.extent.end.offset, OPPOSITES[token.spelling])
                    return

    def negate_condition(self, cursor):
        children = list(cursor.get_children())
        condition = children[0]
        if condition.kind in (CursorKind.DECL_STMT, CursorKind.VAR_DECL):
            if len(children) < 2 or children[1].kind == CursorKind.COMPOUND_STMT:
                return
            condition = children[1]
        start, end = condition.extent.start.offset, condition.extent.end.offset
        # One that is a denial is changed by taking the denial away.
        if self.text[end:end + 1] == ")" and self.text[start] != "!":
            self.add(start, end, f"!({self.text[start:end]})")

    def swap_arguments(self, cursor):
        if cursor.spelling in ("operator==", "operator!=", "isEqualToString"):
            return  # Both orders are the same.
        arguments = [one for one in cursor.get_arguments() if one is not None]
        for left, right in zip(arguments, arguments[1:]):
            if left.type.get_canonical().spelling != right.type.get_canonical().spelling:
                continue
            a, b, c, d = (left.extent.start.offset, left.extent.end.offset,
                          right.extent.start.offset, right.extent.end.offset)
            if a < b <= c < d and self.text[a:b] != self.text[c:d]:
                self.add(a, d, self.text[c:d] + self.text[b:c] + self.text[a:b])


def read_equivalents():
    """Reasons by mutant."""
    reasons, reason = {}, None
    for line in EQUIVALENTS.read_text().splitlines():
        if line.startswith("#") or not line:
            continue
        if line.startswith("  "):
            reasons[line.strip()] = reason
        else:
            reason = line
    return reasons


def every_mutant(words):
    """Of the kit's sources and the headers that they include; other parts have headers there too."""
    waiting = {str(path.relative_to(ROOT)) for folder in FOLDERS
               for path in pathlib.Path(ROOT, folder).rglob("*.cpp")}
    by_file = {}
    while waiting:
        finder = Finder(waiting.pop())
        by_file[finder.file] = finder.mutants()
        waiting |= finder.headers - by_file.keys()
    return [mutant for file in sorted(by_file) if not words or any(word in file for word in words)
            for mutant in by_file[file]]


def print_tests(tests, catches):
    """What each test caught, and how much of that no other did."""
    everything = collections.Counter(name for names in catches for name in names)
    alone = collections.Counter(names[0] for names in catches if len(names) == 1)
    print("alone   all")
    for name in sorted(tests, key=lambda name: (alone[name], everything[name], name)):
        print(f"{alone[name]:5} {everything[name]:5}  {name}")


def main():
    parser = argparse.ArgumentParser(prog="scripts/mutants", description=(
        "Changes the kit in one small way after another, and lets the tests and then the explorer, cut "
        "short, look for each. Exit status 0 only if at least 99 of 100 are caught."))
    parser.add_argument("words", nargs="*", metavar="WORD", help="only files whose path holds a word")
    parser.add_argument("--sample", type=int, default=200, help="how many; 0 for all (default: 200)")
    parser.add_argument("--seed", type=int, default=1, help="of the sample (default: 1)")
    parser.add_argument("--histories", type=int, default=2000,
                        help="at most so many of each scenario of the explorer (default: 2000)")
    parser.add_argument("--tests", action="store_true",
                        help="run every test on each, and print what each caught, and what it alone")
    parser.add_argument("--list", action="store_true", help="only print the mutants")
    given = parser.parse_args()

    every = every_mutant(given.words)
    equivalents = read_equivalents()
    known = {mutant.key() for mutant in every}
    if not given.words and (stale := [key for key in equivalents if key not in known]):
        sys.exit("On the list of equivalents, but no mutant any more:\n  " + "\n  ".join(stale))
    sample = every
    if 0 < given.sample < len(every):
        sample = random.Random(given.seed).sample(every, given.sample)
    sample = sorted((one for one in sample if one.key() not in equivalents),
                    key=lambda one: (one.file, one.start))
    if given.list:
        print(*sample, sep="\n")
        return 0

    watchers = dict(WATCHERS)
    watchers["Explorer"] = [*watchers["Explorer"], "--at-most", str(given.histories)]
    look = Copy.catchers if given.tests else Copy.catcher
    catches, survivors, unbuilt = [], [], 0
    for mutant, verdict in verdicts(sample, watchers, look):
        if verdict == "DOES NOT BUILD":
            unbuilt += 1
        elif verdict == "NOT CAUGHT":
            survivors.append(mutant)
            print(f"NOT CAUGHT  {mutant}", flush=True)
        else:
            catches.append(verdict.split())
    if given.tests:
        print_tests(Copy(0, watchers).tests(), catches)
    else:
        by = collections.Counter(name for names in catches for name in names)
        print(", ".join(f"{by[name]} by {name}" for name in watchers))
    caught, judged = len(catches), len(catches) + len(survivors)
    print(f"{len(every)} mutants, {len(sample)} tried with seed {given.seed}, {unbuilt} of them do not "
          f"build.\n{caught} of {judged} caught: {100 * caught / max(judged, 1):.1f} %.")
    return 0 if judged and caught >= 0.99 * judged else 1


if __name__ == "__main__":
    sys.exit(main())
