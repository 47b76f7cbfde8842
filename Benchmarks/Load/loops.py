"""200 clients in 200 sandboxes at once, each the command with a kit of its own that runs a guest's
cards from the first to the last; and then lists of cards, on one event loop and on two, in turns.
Clients and server share the processors, so what two loops could serve is computed from what a reply
costs the server.
Usage: loops.py PAYLEVENKIT CLIENTS ROUNDS SECONDS"""
import json
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor
from statistics import median

from served import GUEST, Served, registered_card
from wrk import wrk

CARDS = 100


def live(served, command, folder, number):
    """One client. Returns whether all that it finds in the end is its own."""
    below = f"/sandboxes/life{number}"
    served.wanted(201, "provider", f"PUT /v1{below}")

    def run(*arguments):
        printed = subprocess.run(
            [command, "--json", "--store", f"{folder}/life{number}", "--backend",
             served.urls["backend"] + below, "--provider", served.urls["provider"] + below,
             *arguments], check=True, stdout=subprocess.PIPE).stdout
        return json.loads(printed)

    run("sign-in", f"guest{number}@example.com")
    first = run("add", "--test-card", "visa")["backend"][0]["id"]
    second = run("add", "--test-card", "amex", "--use-case", "business")["backend"][1]["id"]
    run("update", first, "--city", f"City {number}")
    run("delete", second)
    run("orphan", "--test-card", "mastercard")
    found = run("sync")
    mine = [(card["id"], card["billing_address"]["city"]) for card in found["backend"]]
    return bool(found["agreement"]) and mine == [(first, f"City {number}")]


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
    listed, costs = {1: [], 2: []}, {1: [], 2: []}
    with (tempfile.TemporaryDirectory() as folder, ThreadPoolExecutor(clients) as pool):
        served = Served(command, folder)
        own = sum(pool.map(lambda number: live(served, command, folder, number), range(clients)))
        served.end()
    print(f"{clients} clients with kits in {clients} sandboxes: {own} found their own.", flush=True)
    for _ in range(rounds):
        for loops in (1, 2):
            with tempfile.TemporaryDirectory() as folder:
                served = Served(command, folder, "--loops", str(loops))
                for figures, figure in zip((listed, costs), lists(served, clients, seconds)):
                    figures[loops].append(figure)
                served.end()
    one, two = median(listed[1]), median(listed[2])
    print(f"{clients} clients in {clients} sandboxes: {one:.0f} lists of {CARDS} cards per second on "
          f"one loop, {two:.0f} on two: {two / one:.2f} times.")
    one, two = median(costs[1]), median(costs[2])
    print(f"A second of the server's processor time serves {one:.0f} lists on one loop and {two:.0f} "
          f"on two: with a processor each, two serve {2 * two / one:.2f} times what one serves; 1.6 "
          "are wanted.")
    return 0 if own == clients else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], *map(int, sys.argv[2:])))
