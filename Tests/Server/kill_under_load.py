"""Clients add while `paylevenkit serve` is killed and started again; whoever had no reply asks
again with the same key. In the end, what was answered is there, and nothing is there twice.
Usage: kill_under_load.py PAYLEVENKIT KILLS"""
import random
import signal
import sys
import tempfile
import threading
from collections import Counter
from concurrent.futures import ThreadPoolExecutor

from served import Served, Unanswered, new_card, registered_card

CLIENTS = 4
# A kill comes after so many replies at most. Whichever moment that is, the same has to hold.
MOST_REPLIES = 40


class Life:
    """What is added for one user: the user with an instrument, another instrument, a card."""

    def __init__(self, name):
        self.name, self.token, self.card = name, None, None
        self.user = new_card(email=name + "@example.com", use_case="default")
        self.replies = 0

    def go_on(self, served, cards, session):
        """Asks for what has no reply yet. Whether the life goes on after it."""
        key = {"Idempotency_Key": f"{self.name}-{self.replies}"}
        if self.replies == 0:
            status, body = served.provider("POST /v1/users", self.user, **key)
            self.token = body.get("token")
        elif self.replies == 1:
            request = f"POST /v1/users/{self.token}/instruments?use_case=private"
            status, body = served.provider(request, new_card(), **key)
        else:
            status, body = served.backend(f"POST {cards}", registered_card(self.name), **key,
                                          Prefer="return=minimal", Authorization=session)
            self.card = body.get("credit_card")
        if status != 201:
            raise SystemExit(f"An addition was answered with {status}: {body.get('error')}")
        self.replies += 1
        return self.replies < 3

    def wrong(self, served, cards):
        """What is there and should not be, or the other way round."""
        found = [each for each in cards if each["external_identifier"] == self.name]
        if found != ([self.card] if self.replies == 3 else []):
            yield "card"
        for use_case, replies in ("default", 1), ("private", 2):
            request = f"GET /v1/users/{self.token}/instruments?use_case={use_case}"
            if len(served.provider(request)[1]["instruments"]) != (self.replies >= replies):
                yield use_case + " instrument"


class Client:
    """One guest, signed in once; one life after the other, across all kills."""

    def __init__(self, name):
        self.name, self.lives, self.is_alive, self.repeated = name, [], False, 0
        self.cards, self.session = f"/v1/guests/{name}@example.com/cards", None

    def sign_in(self, served):
        reply = served.wanted(200, "backend", f"PUT /v1/guests/{self.name}@example.com")
        self.session = "Bearer " + reply["session"]

    def add(self, served):
        if not self.is_alive:
            self.lives.append(Life(f"{self.name}-{len(self.lives)}"))
        self.is_alive = True
        self.is_alive = self.lives[-1].go_on(served, self.cards, self.session)

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

    def wrong(self, served):
        cards = served.wanted(200, "backend", f"GET {self.cards}")["credit_cards"]
        known = {life.name for life in self.lives}
        yield from ("another's card" for card in cards if card["external_identifier"] not in known)
        for life in self.lives:
            yield from life.wrong(served, cards)


def ask_again(client, served):
    """What was under way at the last kill. A connection of this thread may have met an older one."""
    try:
        client.add(served)
    except Unanswered:
        client.add(served)


def main(command, kills):
    clients = [Client("abcd"[number]) for number in range(CLIENTS)]
    with tempfile.TemporaryDirectory() as folder, ThreadPoolExecutor(CLIENTS) as pool:
        served = Served(command, folder).start()
        for client in clients:
            client.sign_in(served)
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
            ask_again(client, served)
        wrong = [what for client in clients for what in client.wrong(served)]
        served.end()
    replies = sum(life.replies for client in clients for life in client.lives)
    print(f"{kills} kills: {replies} additions were answered, "
          f"{sum(client.repeated for client in clients)} of them when they were repeated.")
    for what, times in Counter(wrong).items():
        print(f"{times} times wrong: {what}")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], int(sys.argv[2])))
