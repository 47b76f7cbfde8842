"""200 clients in 200 sandboxes at once, on one event loop and on two, in turns: kits that run a
guest's cards from the first to the last, and then lists of cards. Clients and server share the
processors, so what two loops could serve is computed from what a reply costs the server.
Usage: loops.py PAYLEVENKIT CLIENTS ROUNDS SECONDS"""
import json
import subprocess
import sys
import tempfile
import time
from concurrent.futures import ThreadPoolExecutor
from statistics import median

from served import GUEST, Served, registered_card
from wrk import wrk

CARDS = 100


def lives(served, command, clients, seconds):
    """How many per second, and how many found what is another's: in every sandbox the demo signs the
    same guest in, who in the end has one card on either side."""
    begun = time.monotonic()

    def live(number):
        sandbox = f"/v1/sandboxes/c{number}"
        services = [part for name in ("backend", "provider")
                    for part in ("--" + name, f"{served.urls[name]}/sandboxes/c{number}")]
        lived = crossed = 0
        while time.monotonic() < begun + seconds:
            served.wanted(201, "provider", "PUT " + sandbox)
            demo = subprocess.run([command, *services, "demo", "--test-cards", "--json"],
                                  stdout=subprocess.PIPE, text=True)
            last = json.loads(demo.stdout)["steps"][-1]
            own = demo.returncode == 0 and len(last["backend"]) == len(last["provider"]) == 1
            lived, crossed = lived + 1, crossed + (not own)
            served.wanted(204, "provider", "DELETE " + sandbox)
        return lived, crossed

    with ThreadPoolExecutor(clients) as pool:
        lived, crossed = map(sum, zip(*pool.map(live, range(clients))))
    return lived / (time.monotonic() - begun), crossed


def lists(served, clients, seconds):
    """How many per second, and per second of the server's processor time."""
    served.wanted(201, "provider", "PUT /v1/sandboxes/s0")
    below = "/sandboxes/s0"
    served.wanted(200, "backend", f"PUT {below}{GUEST}")
    for number in range(CARDS):
        served.wanted(201, "backend", f"POST {below}{GUEST}/cards", registered_card(f"ins_{number}"))
    snapshot = served.wanted(201, "provider", f"POST {below}/v1/sandbox/snapshots")["snapshot"]
    for number in range(1, clients):
        served.wanted(201, "provider", f"PUT /v1/sandboxes/s{number}", {"snapshot": snapshot})
    before = served.processor_seconds()
    per_second = wrk(served.urls["backend"], seconds, clients, "sandboxes.lua",
                     [GUEST + "/cards", str(clients)]).per_second
    return per_second, per_second * seconds / (served.processor_seconds() - before)


def main(command, clients, rounds, seconds):
    lived, listed, costs = ({1: [], 2: []} for _ in range(3))
    crossed = 0
    for _ in range(rounds):
        for loops in (1, 2):
            with tempfile.TemporaryDirectory() as folder:
                served = Served(command, folder, "--loops", str(loops))
                figure, mixed = lives(served, command, clients, seconds)
                lived[loops].append(figure)
                crossed += mixed
                for figures, figure in zip((listed, costs), lists(served, clients, seconds)):
                    figures[loops].append(figure)
                served.end()
    for figures, what in ((lived, "lives of a guest's cards"), (listed, f"lists of {CARDS} cards")):
        one, two = median(figures[1]), median(figures[2])
        print(f"{clients} clients in {clients} sandboxes: {one:.0f} {what} per second on one loop, "
              f"{two:.0f} on two: {two / one:.2f} times.", flush=True)
    one, two = median(costs[1]), median(costs[2])
    print(f"A second of the server's processor time serves {one:.0f} lists on one loop and {two:.0f} "
          f"on two: with a processor each, two serve {2 * two / one:.2f} times what one serves; 1.6 "
          f"are wanted.\n{crossed} replies had what is another's.")
    return 1 if crossed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], *map(int, sys.argv[2:])))
