"""Compiles the binding for Apple's runtime, without linking, against hosts that declare their classes
in three styles, and the public headers for a phone; compares the classes, as the compiler writes them
down for the runtime, with the table. A selector that is missing or misspelt fails here.

Usage: apple_runtime.py TABLE SOURCE_DIRECTORY COMPILER FLAGS...
"""
import concurrent.futures
import re
import subprocess
import sys
import tempfile
from pathlib import Path


def as_properties(text):
    """Getters become properties."""
    def declared(match):
        nullable, kind, name = match.groups()
        flags = "nonatomic, readonly" + (", nullable" if nullable else "")
        if name.startswith("is"):
            flags, name = f"{flags}, getter={name}", name[2:].lower()
        return f"@property({flags}) {kind} {name};"
    return re.sub(r"^- \((nullable )?(?!void\))([^)]+)\)(\w+);", declared, text, flags=re.M)


def as_enumerations(text):
    """Whole numbers become enumerations of the host's own."""
    text = re.sub(r"\(NS(?:Ui|I)nteger\)(level|provider|code)\b", r"(HLVTest_\1)\1", text)
    text = re.sub(r"\(NSU?Integer\)(state|currentState);", r"(HLVTest_\1)\1;", text)
    names = sorted(set(re.findall(r"HLVTest_(\w+)\)", text)))
    kinds = "".join(f"typedef NS_ENUM(NSInteger, HLVTest_{name}) {{ HLVTestZero_{name} }};\n"
                    for name in names)
    return text.replace("NS_ASSUME_NONNULL_BEGIN", kinds + "NS_ASSUME_NONNULL_BEGIN", 1)


def write_host(folder, headers, style):
    """The host's frameworks, with declarations of this style."""
    for ours in headers.glob("*Declarations.h"):
        framework, text = re.search(r"__has_include\(<(.*)>\).*?#else(.*)#endif", ours.read_text(),
                                    re.S).groups()
        path = folder / framework
        path.parent.mkdir(parents=True)
        path.write_text(style(text))


def expected(table):
    """The rows of the table, each with its class or protocol; the accessors of the properties; and the
    methods of the protocols that a class adopts, as far as the table lists these."""
    owner, rows = "", set()
    for line in table.read_text().splitlines():
        kind, name, value, *_ = [*line.split(), "", "", ""]
        if kind in ("", "#"):
            continue
        if kind in ("class", "protocol"):
            owner = f"{kind} {name}"
        rows.add((owner, line))
        if kind == "adopts":
            rows |= {(owner, row) for of, row in rows if of == f"protocol {name}" and row[0] in "+-"}
        if kind == "property":
            marks = {mark[0]: mark[1:] for mark in value.split(",")}
            rows.add((owner, f"- {marks.get('G', name)} {value[1]}@:"))
            if "R" not in marks:
                setter = marks.get("S", f"set{name[0].upper()}{name[1:]}:")
                rows.add((owner, f"- {setter} v@:{value[1]}"))
    return rows


def written(code):
    """The same out of what the compiler wrote."""
    texts = dict(re.findall(r'^@(OBJC_\w+[.\d]*) = .* c"(.*)\\00"', code, re.M))
    rows = set()
    kinds = {"PROP_LIST": ("class", "property"), "CLASS_METHODS": ("class", "+"),
             "INSTANCE_METHODS": ("class", "-"), "PROTOCOL_CLASS_METHODS": ("protocol", "+"),
             "PROTOCOL_INSTANCE_METHODS": ("protocol", "-")}
    for listed, name, entries in re.findall(
            rf'^@"_OBJC_\$_({"|".join(kinds)})_(\w+?)(?:\.\d+)?" = (.*)$', code, re.M):
        owner, kind = kinds[listed]
        refs = re.findall(r"@(OBJC_(?:PROP_NAME_ATTR|METH_VAR_(?:NAME|TYPE))_[.\d]*)", entries)
        for text, value in zip(refs[::2], refs[1::2]):
            value = texts[value].replace("\\22", '"')
            if kind != "property":
                value = re.sub(r"=.*\}|\d", lambda match: match[0][-1].strip("0123456789"), value)
            # BOOL is an unsigned character in the headers here.
            value = re.sub("^TC,", "TB,", value) if kind == "property" else value.replace("C", "B")
            rows.add((f"{owner} {name}", f"{kind} {texts[text]} {value}"))
    for name, base in re.findall(r'^@"OBJC_CLASS_\$_(\w+)" = dso_local .*? @"OBJC_CLASS_\$_(\w+)"',
                                 code, re.M):
        rows.add((f"class {name}", f"class {name} {base}"))
    for name, protocols in re.findall(r'^@"_OBJC_CLASS_PROTOCOLS_\$_(\w+)" = (.*)$', code, re.M):
        rows |= {(f"class {name}", f"adopts {protocol}")
                 for protocol in re.findall(r'@"_OBJC_PROTOCOL_\$_(\w+)"', protocols)}
    rows |= {(f"protocol {name}", f"protocol {name}")
             for name in re.findall(r'^@"_OBJC_PROTOCOL_\$_(\w+)"', code, re.M)}
    rows |= {(f"class {name}", f"variable {variable}")
             for name, variable in re.findall(r'^@"OBJC_IVAR_\$_(\w+)\.(\w+)"', code, re.M)}
    return rows


def swift_faults(dump):
    """What Swift must know, out of the compiler's tree of the headers."""
    for owner in re.split(r"\n[|`]-ObjC(?=InterfaceDecl)", dump):
        if not re.match(r"InterfaceDecl .* HLVSDKPay(?:leven|mentManager)", owner):
            continue
        declaration, *methods = re.split(r"\n\| [|`]-ObjCMethodDecl", owner)
        if "AvailabilityAttr" not in declaration:
            yield f"an oldest system is missing: {declaration.splitlines()[0]}"
        named = {re.search(r" [-+] (\S+)", method)[1]: "SwiftNameAttr" in method for method in methods}
        yield from (f"Swift imports two of this name: {selector}" for selector in named
                    if not named[selector] and f"{selector}completion:" in named)
        for method in methods:
            head = method.split("\n", 1)[0]
            waits = re.search(r" - (processAdded|fetchAll)", head) or (
                " - updatePayment" in head and "PaymentInstrumentManager" in owner.split("\n")[0])
            if "ompletion:" in head and bool(waits) == ("SwiftAsyncAttr" in method):
                yield f"an async form too many or too few: {head}"
            if " - initWith" in head and "ObjCDesignatedInitializerAttr" not in method:
                yield f"not a designated initialiser: {head}"
            if "PaymentInstrument" in owner.split("\n")[0] and "ompletion:" in head and (
                    "@UIActor" in method) == (" - updatePayment" in head):
                yield f"a completion marked for the wrong thread: {head}"
            if re.search(r"error 'NSError \* _Nullable \* _Nullable'", method):
                yield f"a place for the error that may be nil: {head}"
            if re.search(r"completion '[^']*(HLV\w+|PLV\w+|NSString) \* _Nullable[,)]", method):
                yield f"a result that may be nil and is not marked so: {head}"


def main():
    table, folder, *command = sys.argv[1:]
    folder, headers = Path(folder), Path(folder, "HLVSDKPaylevenKit")
    sources = [source for part in ("Binding", "Classes", "Foundation", "Host")
               for source in sorted(folder.glob(f"{part}/*.mm"))]
    stubs = folder.parent / "Tests/ObjC/PhoneFoundation"
    with tempfile.TemporaryDirectory() as name:
        scratch = Path(name)
        everything = scratch / "everything.mm"
        everything.write_text("".join(f'#include "{source}"\n' for source in sources))
        for_apple = [*command, "-fobjc-runtime=ios-13.0", "-fno-objc-arc", everything]
        jobs = {"classes": [*for_apple, "-S", "-emit-llvm", "-o", "-"]}
        for style in (as_properties, as_enumerations):
            write_host(scratch / style.__name__, headers, style)
            jobs[style.__name__] = [*for_apple, "-fsyntax-only", "-isystem", scratch / style.__name__]

        umbrella = headers / "HLVSDKPaylevenKit.h"
        jobs["headers"] = [command[0], "-target", "arm64-apple-ios15", "-fblocks", "-Wall", "-Werror",
                           "-nostdinc", "-fsyntax-only", "-I", stubs, "-I", folder,
                           "-Xclang", "-ast-dump", "-x", "objective-c", umbrella]

        def run(job):
            return subprocess.run(job, text=True, capture_output=True)

        with concurrent.futures.ThreadPoolExecutor(2) as pool:
            results = dict(zip(jobs, pool.map(run, jobs.values())))
    failures = [f"{name}:\n{result.stderr}" for name, result in results.items()
                if result.returncode]
    failures += swift_faults(results["headers"].stdout)
    rows, found = expected(Path(table)), written(results["classes"].stdout)
    failures += [f"{owner} misses: {row}" for owner, row in sorted(rows - found)]
    owners = {owner for owner, _ in rows if owner.startswith("class")}
    # What the base object protocol declares is the platform's.
    failures += [f"{owner} has: {row}" for owner, row in sorted(found - rows)
                 if owner in owners and row.startswith("property ") and
                 row.split()[1] not in ("hash", "superclass", "description", "debugDescription")]
    print("\n".join(failures) or f"{len(sources)} sources compile against three styles of host, and "
          f"the framework's headers for a phone; all {len(rows)} rows as in the table")
    sys.exit(bool(failures or not sources))


if __name__ == "__main__":
    main()
