"""Runs the programs and reads the figures that they print."""
import json
import math
import re
import shutil
import statistics
import subprocess
import tempfile
from pathlib import Path

RUNTIME = re.compile(r"(libc|libm|libstdc\+\+|libgcc_s|ld-linux[\w-]*)\.so\.\d+$")


def run(*command):
    return subprocess.run([str(part) for part in command], check=True, text=True,
                          stdout=subprocess.PIPE, stderr=subprocess.PIPE)


def printed(*command):
    """The lines `measure figure...` of one of our programs; a list of the figures for each."""
    lines = (line.split() for line in run(*command).stdout.splitlines())
    return {measure: [float(figure) for figure in figures] for measure, *figures in lines}


def benchmark(program, *options):
    """The medians of a Google Benchmark program, by the name of the benchmark."""
    output = run(program, "--benchmark_format=json", "--benchmark_repetitions=9",
                 "--benchmark_report_aggregates_only=true", *options).stdout
    return {row["run_name"]: row for row in json.loads(output)["benchmarks"]
            if row["aggregate_name"] == "median"}


def collected(within, *command):
    """What the simulator counts within a function: instructions, and what else is asked for."""
    said = run("valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null",
               f"--toggle-collect=hlv::bench::{within}*", *command).stderr
    return [int(count) for count in re.search(r"Collected : ([\d ]+)", said)[1].split()]


def instructions(program, benchmark_name):
    """Of one operation: those within the function that performs it, by how often it ran."""
    filtered = benchmark_name.split("/iterations:")[0]
    counted = collected("performOnce", program, f"--benchmark_filter=^{filtered}/iter")[0]
    repeated = int(re.search(r"/iterations:(\d+)", benchmark_name)[1])
    # Some perform it once more, to count what else it costs.
    return counted / (repeated + (program.name == "OperationsBenchmark"))


def lines_fetched(program, benchmark_name):
    """What is missed in the last level, which other work has taken; the first keeps next to nothing."""
    return sum(collected("performOnce", "--cache-sim=yes", "--I1=256,2,64", "--D1=256,2,64",
                         "--LL=2097152,16,64", program, f"--benchmark_filter=^{benchmark_name}/")[-3:])


def latency(program, milliseconds, rounds):
    """Twice when something got in the way. The median, and what it lies between in 95 of 100 runs,
    whatever the noise."""
    measure = f"latency-{milliseconds}ms.ratio"
    reach = int(1.96 * math.sqrt(2 * rounds) / 2) + 1
    def once():
        ratios = sorted(printed(program, milliseconds, rounds)[measure])
        return [statistics.median(ratios), ratios[rounds - reach], ratios[rounds + reach]]
    def width(figures):
        return figures[2] - figures[1]
    figures = once()
    if width(figures) > 0.25:
        figures = min(figures, once(), key=width)
    return {measure: figures}


def at_rest(program, library):
    """Of the shared library, and of processes that begin to use it."""
    kits = [printed(program) for _ in range(51)]
    faults = min(kit["rest.faults"] for kit in kits)
    bare = [printed(program, int(faults[0])) for _ in range(51)]
    enabling = min(kit["rest.enabling"] for kit in kits)[0]
    reference = min(process["rest.reference"] for process in bare)[0]
    return shared_library(library) | {
        "rest.threads": max(kit["rest.threads"] for kit in kits),
        "rest.allocations": kits[0]["rest.allocations"], "rest.faults": faults,
        "rest.enabling": [enabling / reference],
        "rest.instructions": [collected("performOnce", program)[0]]}


def shared_library(built):
    """What is in the shared library, and what it asks for."""
    symbols = run("nm", built).stdout
    sections = run("readelf", "-SW", built).stdout
    entries = re.search(r"\.init_array\s+INIT_ARRAY\s+\w+\s+\w+\s+(\w+)", sections)
    # One entry is the compiler's own.
    initialisers = (int(entries[1], 16) // 8 if entries else 0) - symbols.count(" frame_dummy\n")
    needed = re.findall(r"NEEDED.*\[(.*)\]", run("readelf", "-d", built).stdout)
    with tempfile.TemporaryDirectory() as folder:
        stripped = Path(folder) / "stripped.so"
        shutil.copy(built, stripped)
        run("strip", stripped)
        text = int(run("size", stripped).stdout.splitlines()[1].split()[0])
    return {"rest.initialisers": [initialisers], "rest.text": [text],
            "rest.foreign-libraries": [sum(not RUNTIME.match(name) for name in needed)]}


def binding(programs):
    """What the Objective-C classes add."""
    with tempfile.TemporaryDirectory() as folder:
        # As in an app: what several sources repeat is there once.
        linked = Path(folder) / "linked"
        run("ld", "-static", "--entry=0", "--unresolved-symbols=ignore-all", "-o", linked,
            "--whole-archive", programs / "libHLVSDKPaylevenKitObjC.a")
        text = int(run("size", linked).stdout.splitlines()[1].split()[0])
    program = programs / "ObjCBenchmark"
    (update,) = benchmark(program)
    return {"objc.text": [text], "objc-update.instructions": [instructions(program, update)]}


def everything(programs, shared, objc_programs):
    figures = printed(programs / "VirtualLatency")
    operations = programs / "OperationsBenchmark"
    measured = {name.split("/")[0]: row for name, row in benchmark(operations).items()}
    by_hand = measured["bare-first-card"]
    for operation in ("first-card", "further-card", "delete", "update", "synchronise"):
        row = measured[operation]
        figures[operation + ".ratio"] = [row["cpu_time"] / by_hand["cpu_time"]]
        figures[operation + ".instructions"] = [instructions(operations, row["run_name"])]
        for counted in ("allocations", "posts", "calls"):
            figures[f"{operation}.{counted}"] = [row[counted]]
    kit_and_hand = ("cold-first-card", "cold-bare-first-card")
    times = [measured[name]["real_time"] for name in kit_and_hand]
    lines = [lines_fetched(operations, name) for name in kit_and_hand]
    figures |= {"cold.ratio": [times[0] / times[1]], "cold.lines": [lines[0] / lines[1]]}
    synchroniser = programs / "SynchronizerBenchmark"
    for name, row in benchmark(synchroniser).items():
        size = "synchroniser-" + name.split("/")[1]
        figures[size + ".final"] = [row["real_time"] / 1000]
        figures[size + ".instructions"] = [instructions(synchroniser, name)]
        figures[size + ".calls"] = [row["calls"]]
        figures[size + ".slice"] = [row["slice"]]
    figures |= at_rest(shared / "AtRest", shared / "libHLVSDKPaylevenKit.so")
    figures |= binding(objc_programs)
    figures |= latency(programs / "RealLatency", 1, 200)
    figures |= latency(programs / "RealLatency", 20, 80)
    figures |= latency(programs / "RealLatency", 80, 40)
    return figures
