"""Compiles the binding for Apple's runtime, without linking, against hosts that declare their classes
in three styles, and the public headers for a phone; compares what the compiler writes down of
properties with the table.

Usage: apple_runtime.py TABLE SOURCE_DIRECTORY COMPILER FLAGS...
"""
import concurrent.futures
import re
import subprocess
import sys
import tempfile
from pathlib import Path

FRAMEWORKS = {"HLVSDKCoreKitDeclarations": "HLVSDKCoreKit/HLVSDKCoreKit",
              "HLVSDKPaymentKitDeclarations": "HLVSDKPaymentKit/HLVSDKPaymentKit",
              "HalvoAuthenticationDeclarations": "Halvo_Authentication/Halvo_Authentication",
              "HalvoErrorsDeclarations": "Halvo_Errors/Halvo_Errors",
              "PaylevenFrameworkDeclarations": "PaylevenFramework/PaylevenFramework"}


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
    for ours, framework in FRAMEWORKS.items():
        text = (headers / f"{ours}.h").read_text()
        text = text[text.index("#else") + 5:text.rindex("#endif")]
        path = folder / f"{framework}.h"
        path.parent.mkdir(parents=True)
        path.write_text(style(text))


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
    found = written(results["classes"].stdout)
    for name, rows in expected(Path(table)).items():
        if found.get(name, {}) != rows:
            failures.append(f"{name} has the properties {found.get(name, {})}, not {rows}")
    print("\n".join(failures) or f"{len(sources)} sources compile against three styles of host, and "
          "the framework's headers for a phone; all properties as in the table")
    sys.exit(bool(failures or not sources))


if __name__ == "__main__":
    main()
