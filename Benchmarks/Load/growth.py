"""What the Nth card of a guest costs, and the Nth sandbox.
Usage: growth.py PAYLEVENKIT MOST"""
import sys
import tempfile
import time
from concurrent.futures import ThreadPoolExecutor
from statistics import median

from served import Served, letters, registered_card

SAMPLES = 50
FILLERS = 4


def milliseconds(call):
    begun = time.perf_counter()
    call()
    return (time.perf_counter() - begun) * 1_000


def steps(most):
    return [step for step in (1, 100, 1_000, 10_000) if step <= most]


def cards(served, pool, most):
    print("the Nth card        minimal, ms    whole guest, ms    of that the wire, %", flush=True)
    guest = "/v1/guests/many@example.com"
    served.wanted(200, "backend", "PUT " + guest)
    made = 0

    def add(number, **headers):
        served.wanted(201, "backend", f"POST {guest}/cards",
                      registered_card("ins_" + letters(number)), **headers)

    def sample(**headers):
        nonlocal made
        taken = []
        for _ in range(SAMPLES):
            made += 1
            taken.append(milliseconds(lambda: add(made, **headers)))
        return median(taken)

    for step in steps(most):
        list(pool.map(lambda number: add(number, Prefer="return=minimal"),
                      range(made + 1, max(step, made + 1))))
        made = max(step - 1, made)
        minimal = sample(Prefer="return=minimal")
        whole = sample()
        # The effect is the same; only the cards in the reply make the difference.
        print(f"{step:12}{minimal:19.2f}{whole:19.2f}{max(0, 1 - minimal / whole) * 100:23.0f}",
              flush=True)


def sandboxes(served, pool, most):
    print("the Nth sandbox   made and used, ms: median, 99 %", flush=True)
    made, all_taken = 0, []

    def create(_):
        def use():
            made_id = served.wanted(201, "provider", "POST /v1/sandboxes", {"seed": 7})["id"]
            served.wanted(200, "backend", f"PUT /sandboxes/{made_id}/v1/guests/a@example.com")
        return milliseconds(use)

    for step in steps(most):
        list(pool.map(create, range(made, step - 1)))
        made = max(step - 1, made)
        served.forget_connections()
        taken = sorted(create(number) for number in range(SAMPLES))
        all_taken += taken
        made += SAMPLES
        print(f"{step:12}{median(taken):18.2f}{taken[len(taken) * 99 // 100]:14.2f}", flush=True)
    all_taken.sort()
    print(f"A new sandbox is ready in {median(all_taken):.2f} ms (median), "
          f"{all_taken[len(all_taken) * 99 // 100]:.2f} ms (99 %); 20 are wanted.")
    print(f"With {made} sandboxes the server has {served.memory() // 1024} MiB in memory.")


def main(command, most):
    with tempfile.TemporaryDirectory() as folder, ThreadPoolExecutor(FILLERS) as pool:
        served = Served(command, folder)
        cards(served, pool, most)
        sandboxes(served, pool, most)
        served.end()
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], int(sys.argv[2])))
