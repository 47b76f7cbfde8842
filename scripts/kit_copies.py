"""Copies of the kit that are changed, built and put before the tests, one change at a time in each."""
import concurrent.futures
import os
import pathlib
import queue
import shutil
import signal
import subprocess

ROOT = pathlib.Path(__file__).resolve().parent.parent
# Each with the targets' own names, the quickest first; "races" are those built with ThreadSanitizer. The
# explorer stops at the first history that is not as it must be.
WATCHERS = {
    "KitTests": ["--gtest_brief=1"],
    "PlatformTests": ["--gtest_brief=1"],
    "Explorer": ["--first"],
    "SecrecyTests": ["--gtest_brief=1"],
    "races/PlatformTests": ["--gtest_brief=1"],
}
# A call on a null pointer and an element that a container does not have end the program, as they do
# under the sanitizers of the tests. What returns a reference to nothing does not build, as in a
# strict build.
FLAGS = ("-O1 -Werror=return-local-addr -D_GLIBCXX_ASSERTIONS -fsanitize=null "
         "-fsanitize-undefined-trap-on-error")
# What takes longer than this many seconds hangs, which is a way of catching.
PATIENCE = 30
PATIENCE_WITH_EXPLORER = 600


class DoesNotBuild(SystemExit):
    pass


class Copy:
    """One copy of the project's files, with a build tree of its own."""

    def __init__(self, number, watchers):
        place = ROOT / "build" / "defects" / str(number)
        self.source, self.build_tree, self.watchers = place / "source", place / "tree", watchers

    def prepare(self):
        """Leaves alone what has not changed, so that only that is built again."""
        names = subprocess.run(["git", "ls-files", "-co", "--exclude-standard"], cwd=ROOT, check=True,
                               capture_output=True, text=True).stdout.split("\n")
        for name in filter(lambda name: name and (ROOT / name).is_file(), names):
            original, target = ROOT / name, self.source / name
            if not target.exists() or target.read_bytes() != original.read_bytes():
                target.parent.mkdir(parents=True, exist_ok=True)
                shutil.copy(original, target)
        ordinary = ["-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug", f"-DCMAKE_CXX_FLAGS_DEBUG={FLAGS}",
                    "-DHLVSDKPAYLEVENKIT_TESTS=ON"]
        with_races = ["--preset", "tsan", "-DCMAKE_COMPILE_WARNING_AS_ERROR=OFF"]
        for tree, options in ("", ordinary), ("races", with_races):
            subprocess.run(["cmake", *options, "-DHLVSDKPAYLEVENKIT_SANDBOX=OFF", "-S", self.source,
                            "-B", self.build_tree / tree], check=True, stdout=subprocess.DEVNULL)

    def build(self, name):
        program = self.build_tree / name
        built = subprocess.run(["cmake", "--build", program.parent, "-j", "1", "--target", program.name],
                               capture_output=True, text=True)
        if built.returncode != 0:
            raise DoesNotBuild(built.stdout)

    def finds_fault(self, name, arguments):
        patience = PATIENCE_WITH_EXPLORER if name == "Explorer" else PATIENCE
        # In a session of its own: a test's own processes hang with it, and end with it.
        run = subprocess.Popen([self.build_tree / name, *arguments], stdout=subprocess.PIPE,
                               stderr=subprocess.STDOUT, start_new_session=True)
        try:
            output, _ = run.communicate(timeout=patience)
        except subprocess.TimeoutExpired:
            os.killpg(run.pid, signal.SIGKILL)
            run.communicate()
            return True
        # The explorer's counts are not those on record when it stops early or is cut short.
        if name == "Explorer":
            return b"VIOLATED" in output or run.returncode not in (0, 1)
        return run.returncode != 0

    def catcher(self):
        """The name of the first watcher that finds fault, or None; the others are not even built."""
        for name, arguments in self.watchers.items():
            self.build(name)
            if self.finds_fault(name, arguments):
                return name
        return None

    def tests(self):
        """How to call `finds_fault` for each test, by its name; the explorer is one test."""
        found = {"Explorer": ("Explorer", self.watchers["Explorer"])}
        for name in self.watchers.keys() - found:
            lines = subprocess.run([self.build_tree / name, "--gtest_list_tests"], check=True,
                                   capture_output=True, text=True).stdout.splitlines()
            folder, suite = name.removesuffix(pathlib.Path(name).name), None
            for line in lines[1:]:
                if line.startswith(" "):
                    test = suite + line.strip()
                    found[folder + test] = name, [f"--gtest_filter={test}"]
                else:
                    suite = line
        return found

    def catchers(self):
        """The names of all tests that find fault, each run by itself."""
        for name in self.watchers:
            self.build(name)
        return " ".join(test for test, call in self.tests().items() if self.finds_fault(*call))

    def verdict(self, file, change, look):
        """What `look` says when the text of `file` is what `change` makes of it, or why nobody can."""
        path = self.source / file
        text = path.read_text()
        changed = change(text)
        if changed is None:
            return "NOT IN THE SOURCE, or more than once"
        path.write_text(changed)
        try:
            return look(self) or "NOT CAUGHT"
        except DoesNotBuild:
            return "DOES NOT BUILD"
        finally:
            path.write_text(text)


def verdicts(changes, watchers, look=Copy.catcher, jobs=os.cpu_count()):
    """Yields (change, verdict) in the order of `changes`, each of which has a file and a call."""
    copies = queue.SimpleQueue()
    every = [Copy(number, watchers) for number in range(max(1, min(jobs, len(changes))))]
    with concurrent.futures.ThreadPoolExecutor(len(every)) as pool:
        list(pool.map(Copy.prepare, every))
        if catcher := every[0].catcher():
            raise SystemExit(f"{catcher} finds fault with the clean tree.")
        for copy in every:
            copies.put(copy)

        def verdict_on(change):
            copy = copies.get()
            try:
                return copy.verdict(change.file, change, look)
            finally:
                copies.put(copy)

        yield from zip(changes, pool.map(verdict_on, changes))
