"""What scripts/defects does once everything is installed."""
import pathlib
import shutil
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
COPY = ROOT / "build" / "defects" / "source"
BUILD = ROOT / "build" / "defects" / "tree"
# Each with the targets' own names. The explorer stops at the first history that is not as it must be.
WATCHERS = {
    "Explorer": ["--first"],
    "KitTests": ["--gtest_brief=1"],
    "SecrecyTests": ["--gtest_brief=1"],
    "PlatformTests": ["--gtest_brief=1"],
}


def read_defects(words):
    defects = []
    for line in (ROOT / "Tests/Defects/defects.txt").read_text().splitlines():
        if line.startswith("#") or not line:
            continue
        if line.startswith("@ "):
            defects[-1]["file"] = line[2:]
        elif line[0] in "-+":
            defects[-1][line[0]].append(line[1:])
        else:
            defects.append({"title": line, "-": [], "+": []})
    return [one for one in defects if all(word in one["title"] for word in words)]


def copy_sources():
    """Leaves alone what has not changed, so that only that is built again."""
    names = subprocess.run(["git", "ls-files", "-co", "--exclude-standard"], cwd=ROOT, check=True,
                           capture_output=True, text=True).stdout.split("\n")
    for name in filter(lambda name: name and (ROOT / name).is_file(), names):
        source, target = ROOT / name, COPY / name
        if not target.exists() or target.read_bytes() != source.read_bytes():
            target.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(source, target)


def build():
    return subprocess.run(["cmake", "--build", BUILD, "--target", *WATCHERS],
                          capture_output=True, text=True)


def who_catches():
    for name, arguments in WATCHERS.items():
        try:
            run = subprocess.run([BUILD / name, *arguments], capture_output=True, timeout=300)
        except subprocess.TimeoutExpired:
            return name
        # The explorer's counts are not those on record when it stops early or is cut short.
        caught = b"VIOLATED" in run.stdout or run.returncode not in (0, 1)
        if caught if name == "Explorer" else run.returncode != 0:
            return name
    return None


def try_out(defect):
    file = COPY / defect["file"]
    text = file.read_text()
    old, new = ("\n".join(defect[sign]) for sign in "-+")
    if text.count(old) != 1:
        return "NOT IN THE SOURCE, or more than once"
    file.write_text(text.replace(old, new))
    try:
        if build().returncode != 0:
            return "DOES NOT BUILD"
        return who_catches() or "NOT CAUGHT"
    finally:
        file.write_text(text)


def main():
    copy_sources()
    subprocess.run(["cmake", "-G", "Ninja", "-S", COPY, "-B", BUILD, "-DCMAKE_BUILD_TYPE=Debug",
                    "-DCMAKE_CXX_FLAGS_DEBUG=-O1", "-DHLVSDKPAYLEVENKIT_TESTS=ON",
                    "-DHLVSDKPAYLEVENKIT_SANDBOX=OFF"], check=True, stdout=subprocess.DEVNULL)
    built = build()
    if built.returncode != 0:
        sys.exit(built.stdout)
    if catcher := who_catches():
        sys.exit(f"{catcher} finds fault with the clean tree.")
    defects = read_defects(sys.argv[1:])
    missed = 0
    for defect in defects:
        verdict = try_out(defect)
        missed += verdict not in WATCHERS
        print(f"{verdict:14}  {defect['title']}", flush=True)
    print(f"{len(defects) - missed} of {len(defects)} caught; the clean tree has none.")
    return 1 if missed or not defects else 0


if __name__ == "__main__":
    sys.exit(main())
