"""Compiles every source and public header of the binding for Apple's runtime, without linking, and
compares the properties that the compiler writes down with the table.

Usage: apple_runtime.py TABLE SOURCE_DIRECTORY COMPILER FLAGS...
"""
import concurrent.futures
import re
import subprocess
import sys
from pathlib import Path


def expected(table):
    """The rows `property name attributes` of each class, and the classes without any."""
    classes = {}
    for line in table.read_text().splitlines():
        words = line.split()
        if line.startswith("class "):
            rows = classes.setdefault(words[1], {})
        elif line.startswith("property "):
            rows[words[1]] = words[2]
    return classes


def written(code):
    """The same out of what the compiler wrote."""
    texts = dict(re.findall(r'^@(OBJC_PROP_NAME_ATTR_[.\d]*) = .* c"(.*)\\00"', code, re.M))
    # BOOL is an unsigned character in the headers here.
    texts = {name: re.sub("^TC,", "TB,", text.replace("\\22", '"'))
             for name, text in texts.items()}
    lists = re.findall(r'^@"_OBJC_\$_PROP_LIST_(\w+)" = (.*)$', code, re.M)
    found = {}
    for name, entries in lists:
        refs = re.findall(r"@(OBJC_PROP_NAME_ATTR_[.\d]*)", entries)
        pairs = zip(refs[::2], refs[1::2])
        # What the base object protocol declares is the platform's.
        platforms = {"hash", "superclass", "description", "debugDescription"}
        found[name] = {texts[key]: texts[value] for key, value in pairs
                       if texts[key] not in platforms}
    return found


def main():
    table, folder, *command = sys.argv[1:]
    sources = sorted(Path(folder).glob("[BCFH]*/*.mm"))

    def compiled(source):
        return subprocess.run([*command, "-fobjc-runtime=ios-13.0", "-fno-objc-arc", "-S",
                               "-emit-llvm", "-o", "-", source], text=True, capture_output=True)

    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        results = list(pool.map(compiled, sources))
    failures = [result.stderr for result in results if result.returncode]

    # An app's own sources: plain Objective-C, one header at a time.
    headers = sorted(Path(folder, "HLVSDKPaylevenKit").rglob("*.h"))
    plain = [flag for flag in command if not flag.startswith("-std")]
    for header in headers:
        result = subprocess.run([*plain, "-fobjc-runtime=ios-13.0", "-Wall",
                                 "-fsyntax-only", "-x", "objective-c", header],
                                text=True, capture_output=True)
        if result.returncode or "HLVSDK" in result.stderr:
            failures.append(result.stderr)
    found = {}
    for result in results:
        found |= written(result.stdout)
    for name, rows in expected(Path(table)).items():
        if found.get(name, {}) != rows:
            failures.append(f"{name} has the properties {found.get(name, {})}, not {rows}")
    print("\n".join(failures) or f"{len(sources)} sources and {len(headers)} headers "
          "compile; all properties as in the table")
    sys.exit(bool(failures or not sources))


if __name__ == "__main__":
    main()
