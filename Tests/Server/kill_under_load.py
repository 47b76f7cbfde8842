"""Clients add while `paylevenkit serve` is killed and started again; whoever had no reply asks
again with the same key. In the end, what was answered is there, and nothing is there twice.
Usage: kill_under_load.py PAYLEVENKIT KILLS"""
import random
import signal
import sys
import tempfile
import threading
from concurrent.futures import ThreadPoolExecutor

from served import Served, Unanswered, new_card, registered_card

# A kill comes after so many replies at most. Whichever moment that is, the same has to hold.
MOST_REPLIES = 40


class Client:
    """One guest, signed in once, who adds an instrument and a card in turn, across all kills."""

    def __init__(self, name, served):
        self.name, self.replies, self.repeated = name, 0, 0
        self.cards = f"/v1/guests/{name}@example.com/cards"
        reply = served.wanted(200, "backend", f"PUT /v1/guests/{name}@example.com")
        self.session = "Bearer " + reply["session"]
        user = new_card(email=name + "@example.com", use_case="default")
        token = served.wanted(201, "provider", "POST /v1/users", user)["token"]
        self.instruments = f"/v1/users/{token}/instruments?use_case=private"

    def add(self, served):
        """Asks for what has no reply yet."""
        name = f"{self.name}-{self.replies}"
        if self.replies % 2 == 0:
            status, body = served.provider(f"POST {self.instruments}", new_card(),
                                           Idempotency_Key=name)
        else:
            status, body = served.backend(f"POST {self.cards}", registered_card(name),
                                          Idempotency_Key=name, Prefer="return=minimal",
                                          Authorization=self.session)
        if status != 201:
            raise SystemExit(f"An addition was answered with {status}: {body.get('error')}")
        self.replies += 1

    def add_until_killed(self, served, answered):
        try:
            while True:
                self.add(served)
                answered.release()
        except Unanswered:
            self.repeated += 1
        finally:
            # Nobody waits for replies that do not come any more.
            answered.release(MOST_REPLIES)

    def is_right(self, served):
        cards = served.wanted(200, "backend", f"GET {self.cards}")["credit_cards"]
        instruments = served.wanted(200, "provider", f"GET {self.instruments}")["instruments"]
        names = [f"{self.name}-{number}" for number in range(1, self.replies, 2)]
        return ([card["external_identifier"] for card in cards] == names
                and len(instruments) == (self.replies + 1) // 2)


def main(command, kills):
    with tempfile.TemporaryDirectory() as folder, ThreadPoolExecutor(4) as pool:
        served = Served(command, folder).start()
        clients = [Client(name, served) for name in "abcd"]
        for _ in range(kills):
            answered = threading.Semaphore(0)
            adding = [pool.submit(each.add_until_killed, served, answered) for each in clients]
            for _ in range(random.randint(0, MOST_REPLIES)):
                answered.acquire()
            served.end(signal.SIGKILL)
            for each in adding:
                each.result()
            served.connections = threading.local()
            served.start()
        for client in clients:
            client.add(served)
        wrong = [client.name for client in clients if not client.is_right(served)]
        served.end()
    print(f"{kills} kills: {sum(client.replies for client in clients)} additions were answered, "
          f"{sum(client.repeated for client in clients)} of them when they were repeated.")
    if wrong:
        print(f"Not what was answered, or twice: {', '.join(wrong)}")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], int(sys.argv[2])))
