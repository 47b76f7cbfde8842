"""What calls that are never answered, and connections that ask for nothing, cost the others.
Usage: crowds.py PAYLEVENKIT HELD IDLE ROUNDS SECONDS"""
import http.client
import sys
import tempfile
import time
from statistics import median

from served import GUEST, Served
from wrk import wrk

LONGEST_WAIT = 60


def connect(port):
    connection = http.client.HTTPConnection("127.0.0.1", port, timeout=LONGEST_WAIT)
    connection.connect()
    # One that has ended stays ended.
    connection.auto_open = 0
    return connection


def reply_to(connection):
    """Whether a reply of success came, whole."""
    try:
        reply = connection.getresponse()
        reply.read()
    except (OSError, http.client.HTTPException):
        return False
    return reply.status == 200


def until(holds, what):
    deadline = time.monotonic() + LONGEST_WAIT
    while not holds():
        if time.monotonic() > deadline:
            raise SystemExit("Not in time: " + what)


def held_calls(served, held, rounds, seconds):
    """The slowest hundredth of other calls, with and without the held ones, in turns."""
    url, port = served.urls["backend"] + GUEST, served.port("backend")
    without, with_held = [], []
    for _ in range(rounds):
        without.append(wrk(url, seconds, 4).p99_ms)
        served.wanted(200, "provider", "POST /v1/sandbox/faults",
                      {"operation": "fetchGuestCreditCards", "kind": "never", "times": None})
        before = len(served.wanted(200, "provider", "GET /v1/sandbox/firings")["firings"])
        connections = [connect(port) for _ in range(held)]
        for connection in connections:
            connection.request("GET", GUEST + "/cards")
        # The list keeps only so many; when it is full, all have met the fault or nearly so.
        until(lambda: len(served.wanted(200, "provider", "GET /v1/sandbox/firings")["firings"])
              >= min(before + held, 1_000), "the calls meet the fault")
        with_held.append(wrk(url, seconds, 4).p99_ms)
        for connection in connections:
            connection.close()
        served.wanted(200, "provider", "DELETE /v1/sandbox/faults")
    ratio = median(with_held) / median(without)
    print(f"99 % of calls take {median(without):.2f} ms at most, and {median(with_held):.2f} ms "
          f"while {held} others are never answered: {ratio:.2f} times; 1.5 are wanted.", flush=True)


def idle_connections(served, idle):
    """Each has had a reply, and then asks for nothing."""
    before = served.memory()
    connections = [connect(served.port("backend")) for _ in range(idle)]
    for connection in connections:
        connection.request("GET", GUEST)
    answered = sum(reply_to(connection) for connection in connections)
    grown = (served.memory() - before) / 1024
    served.wanted(200, "backend", "GET " + GUEST)
    again = connections[::max(1, idle // 100)]
    for connection in again:
        connection.request("GET", GUEST)
    answered_again = sum(reply_to(connection) for connection in again)
    for connection in connections:
        connection.close()
    print(f"{idle} idle connections, of which {answered} had a reply, cost {grown:.0f} MiB; less "
          f"than 200 are wanted. Of {len(again)} that ask again, {answered_again} have a reply.", flush=True)
    return answered == idle and answered_again == len(again)


def main(command, held, idle, rounds, seconds):
    with tempfile.TemporaryDirectory() as folder:
        served = Served(command, folder, "--answer-limit", "600000")
        served.wanted(200, "backend", "PUT " + GUEST)
        held_calls(served, held, rounds, seconds)
        lost_none = idle_connections(served, idle)
        served.end()
    return 0 if lost_none else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], *map(int, sys.argv[2:])))
