"""Lists and adds cards on `paylevenkit serve` and on its peers, in one run and in turns.
Usage: side_by_side.py PAYLEVENKIT MODULES ROUNDS SECONDS"""
import random
import sys
import tempfile
from statistics import median

from peers import make_peers
from served import GUEST, Served, letters, new_card, registered_card
from wrk import wrk

KEY = ("X-API-Key: any",)


class Ours:
    """The server with one guest, whose card and instrument the lists hold."""

    def __init__(self, command, folder):
        self.served = Served(command, folder)
        self.served.wanted(200, "backend", "PUT " + GUEST)
        self.served.wanted(201, "backend", f"POST {GUEST}/cards", registered_card("ins_listed"))
        user = new_card(email="guest@example.com", use_case="default")
        token = self.served.wanted(201, "provider", "POST /v1/users", user)["token"]
        self.cards = self.served.urls["backend"] + GUEST + "/cards"
        self.instruments = (self.served.urls["provider"]
                            + f"/v1/users/{token}/instruments?use_case=default")
        self.guests = 0

    def add(self, seconds, connections, *keyed):
        """Of a guest of its own, so that none has more cards than another's."""
        self.guests += 1
        guest = f"/v1/guests/{letters(self.guests)}@example.com"
        self.served.wanted(200, "backend", "PUT " + guest)
        return wrk(self.served.urls["backend"], seconds, connections, "add.lua",
                   (guest + "/cards", "ours", letters(self.guests), *keyed))


class Table:
    """Figures by row and server, a list of rounds each."""

    def __init__(self):
        self.figures = {}

    def add(self, row, name, measured):
        self.figures.setdefault(row, {}).setdefault(name, []).append(measured.per_second)

    def print(self, wanted):
        names = list(dict.fromkeys(name for row in self.figures.values() for name in row))
        print("requests per second, median" + " " * 17 + "".join(f"{name:>14}" for name in names)
              + "         ratio  wanted")
        for row, figures in self.figures.items():
            medians = {name: median(rounds) for name, rounds in figures.items()}
            ratio = medians["ours"] / max(medians[name] for name in medians if name != "ours")
            print(f"{row:44}" + "".join(f"{medians[name]:14.0f}" if name in medians else " " * 14
                                        for name in names)
                  + f"{ratio:14.1f}  >= {wanted[row]}", flush=True)


def main(command, modules, rounds, seconds):
    table = Table()
    lists = ("list cards, 4 connections", "list instruments, 4 connections")
    wanted = {lists[0]: 10, lists[1]: 10}
    ports = random.sample(range(10_000, 30_000), 3)
    with tempfile.TemporaryDirectory() as folder:
        ours = Ours(command, folder)
        peers = make_peers(modules, ports)
        for _ in range(rounds):
            table.add(lists[0], "ours", wrk(ours.cards, seconds, 4))
            table.add(lists[1], "ours", wrk(ours.instruments, seconds, 4, headers=KEY))
            for peer in peers:
                peer.start(folder)
                # What runs in Node is slow at first.
                wrk(peer.cards, 1, 4)
                table.add(lists[0], peer.name, wrk(peer.cards, seconds, 4))
                table.add(lists[1], peer.name, wrk(peer.instruments, seconds, 4))
                peer.end()
            for connections, least in (4, 3), (64, 8):
                row = f"add cards, {connections} connections"
                wanted[row] = wanted[row + ", keyed"] = least
                table.add(row, "ours", ours.add(seconds, connections))
                table.add(row + ", keyed", "ours", ours.add(seconds, connections, "keyed"))
                # The more rows it has, the longer its file takes to write, so it begins anew.
                peer = peers[1].start(folder)
                measured = wrk(peer.url, seconds, connections, "add.lua", ("/added", "plain", "x"))
                table.add(row, peer.name, measured)
                table.add(row + ", keyed", peer.name, measured)
                peer.end()
        ours.served.end()
    table.print(wanted)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], sys.argv[2], int(sys.argv[3]), int(sys.argv[4])))
