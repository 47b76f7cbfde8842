"""Runs `wrk` and reads what it prints."""
import os
import re
import subprocess
from dataclasses import dataclass

HERE = os.path.dirname(os.path.abspath(__file__))
UNITS = {"us": 0.001, "ms": 1, "s": 1_000, "m": 60_000}


@dataclass
class Measured:
    per_second: float
    p99_ms: float


def wrk(url, seconds, connections, script=None, arguments=(), headers=()):
    """Requests of one thread over so many connections. Every reply has to be one of success."""
    command = ["wrk", "-t1", f"-c{connections}", f"-d{seconds}s", "--latency", "--timeout", "20s"]
    for header in headers:
        command += ["-H", header]
    if script:
        command += ["-s", os.path.join(HERE, script)]
    printed = subprocess.run([*command, url, *(["--", *arguments] if arguments else [])],
                             check=True, capture_output=True, text=True).stdout
    if problem := re.search(r"Non-2xx.*|Socket errors.*", printed):
        raise SystemExit(f"{url}: {problem[0]}")
    p99 = re.search(r"99%\s+([\d.]+)(us|ms|s|m)", printed)
    return Measured(float(re.search(r"Requests/sec:\s+([\d.]+)", printed)[1]),
                    float(p99[1]) * UNITS[p99[2]])
