"""Asks `paylevenkit serve` the same in each of ten rounds, and prints what that took.
Usage: load.py PAYLEVENKIT REQUESTS
Exit status 0 only if the services' memory after the last round is what it was after the first one,
in which they warm up."""
import os
import re
import sys
import tempfile
import time
import uuid
from concurrent.futures import ThreadPoolExecutor
from statistics import mean

from served import GUEST, Served, new_card, registered_card

ROUNDS = 10
CLIENTS = 4
# An answer holds all cards of the guest, so they go again before they are many.
CARDS_AT_ONCE = 20
# KiB that an allocator may keep of a moment in which many requests met.
MEMORY_MAY_GROW = 4 * 1024


class Kind:
    """Requests of one kind: how long each took, and all of them."""

    def __init__(self, name, ask):
        self.name, self.ask = name, ask
        self.latencies, self.seconds = [], 0

    def run(self, pool, marks):
        """The answers, one for each of the marks that go into the requests."""
        def once(mark):
            begun = time.perf_counter()
            status, body = self.ask(mark)
            self.latencies.append(time.perf_counter() - begun)
            if status not in (200, 201):
                raise SystemExit(f"{self.name} was answered with {status}.")
            return body
        begun = time.perf_counter()
        bodies = list(pool.map(once, marks))
        self.seconds += time.perf_counter() - begun
        return bodies

    def __str__(self):
        count = len(self.latencies)
        part = count // ROUNDS
        figures = (sorted(self.latencies)[count * 99 // 100], mean(self.latencies[part:2 * part]),
                   mean(self.latencies[-part:]))
        return (f"{self.name:18}{count:9}{count / self.seconds:9.0f}"
                + "".join(f"{figure * 1000:12.2f}" for figure in figures))


def make_kinds(served):
    """What is listed is there from the beginning, and does not grow."""
    served.backend("PUT " + GUEST)
    served.backend(f"POST {GUEST}/cards", registered_card("ins_listed"))

    def add_user(mark):
        card = new_card(email=mark + "@example.com", use_case="default")
        return served.provider("POST /v1/users", card, mark)
    listed = f"/v1/users/{add_user('listed')[1]['token']}/instruments?use_case=default"
    return [
        Kind("list cards", lambda _: served.backend(f"GET {GUEST}/cards")),
        Kind("list instruments", lambda _: served.provider("GET " + listed)),
        Kind("add user", add_user),
        Kind("add instrument", lambda token: served.provider(
            f"POST /v1/users/{token}/instruments?use_case=private", new_card(), token)),
        Kind("add card", lambda mark: served.backend(
            f"POST {GUEST}/cards", registered_card(mark), mark)),
        Kind("delete card", lambda card: served.backend(f"DELETE {GUEST}/cards/{card}")),
    ]


def make_marks(count):
    # Letters only, so that none looks like a card number.
    letters = str.maketrans("0123456789", "ghijklmnop")
    return [uuid.uuid4().hex.translate(letters) for _ in range(count)]


def play_round(kinds, pool, batches):
    list_cards, list_instruments, add_user, add_instrument, add_card, delete_card = kinds
    list_cards.run(pool, range(batches * CARDS_AT_ONCE))
    list_instruments.run(pool, range(batches * CARDS_AT_ONCE))
    users = add_user.run(pool, make_marks(batches * CARDS_AT_ONCE))
    add_instrument.run(pool, [user["token"] for user in users])
    for _ in range(batches):
        cards = add_card.run(pool, make_marks(CARDS_AT_ONCE))
        delete_card.run(pool, [card["credit_card"]["id"] for card in cards])


def main(command, requests):
    with tempfile.TemporaryDirectory() as folder, ThreadPoolExecutor(CLIENTS) as pool:
        served = Served(command, folder)
        served.start()
        kinds = make_kinds(served)
        taken = []
        print("round  memory, KiB  store, KiB")
        for number in range(1, ROUNDS + 1):
            play_round(kinds, pool, max(requests // ROUNDS // len(kinds) // CARDS_AT_ONCE, 1))
            with open(f"/proc/{served.process.pid}/status", encoding="ascii") as status:
                taken.append(int(re.search(r"VmRSS:\s+(\d+)", status.read())[1]))
            store = sum(os.path.getsize(served.store + end) for end in ("", "-wal")) // 1024
            print(f"{number:5}{taken[-1]:13}{store:12}", flush=True)
        served.end()
    print(f"\n{CLIENTS} clients          requests    per s  99 %, ms   mean of round 2, last")
    print(*kinds, sep="\n")
    grown = taken[-1] - taken[0]
    print(f"Memory grew by {grown} KiB after the first round; {MEMORY_MAY_GROW} are allowed.")
    return 0 if grown <= MEMORY_MAY_GROW else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], int(sys.argv[2])))
