"""200 clients in 200 sandboxes at once, on one event loop and on two, in turns.
Usage: loops.py PAYLEVENKIT CLIENTS ROUNDS SECONDS CLIENT-PROGRAM
CLIENT-PROGRAM BACKEND PROVIDER CLIENTS SECONDS prints {"lives", "requests", "seconds", "crossed"}
in JSON."""
import json
import os
import subprocess
import sys
import tempfile
from statistics import median

from served import Served

def measure(command, program, loops, clients, seconds):
    with tempfile.TemporaryDirectory() as folder:
        served = Served(command, folder, "--loops", str(loops)).start()
        printed = subprocess.run(
            [program, served.url("backend"), served.url("provider"), str(clients), str(seconds)],
            check=True, stdout=subprocess.PIPE, text=True).stdout
        served.end()
    result = json.loads(printed)
    return result["lives"] / result["seconds"], result["crossed"]


def main(command, clients, rounds, seconds, program):
    per_second, crossed = {1: [], 2: []}, 0
    for _ in range(rounds):
        for loops, figures in per_second.items():
            figure, mixed = measure(command, program, loops, clients, seconds)
            figures.append(figure)
            crossed += mixed
    one, two = median(per_second[1]), median(per_second[2])
    print(f"{clients} clients in {clients} sandboxes ({os.path.basename(program)}): {one:.0f} "
          f"lives of a guest's cards per second on one loop, {two:.0f} on two: {two / one:.2f} "
          f"times; 1.6 are wanted. {crossed} replies had what is another's.")
    return 1 if crossed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], int(sys.argv[2]), int(sys.argv[3]), int(sys.argv[4]), sys.argv[5]))
