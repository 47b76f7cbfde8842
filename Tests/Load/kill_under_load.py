"""Clients add while `paylevenkit serve` is killed and started again; whoever had no answer asks
again with the same key. In the end, what was answered is there, and nothing is there twice.
Usage: kill_under_load.py PAYLEVENKIT KILLS"""
import random
import signal
import sys
import tempfile
import threading
from collections import Counter
from concurrent.futures import ThreadPoolExecutor

from served import GUEST, Served, Unanswered, new_card, registered_card

CLIENTS = 4
# A kill comes after so many answers at most. Whichever moment that is, the same has to hold.
MOST_ANSWERS = 40
# How often may be there what was answered with a status, or not asked for. With 409, the process
# ended before the answer to the first request was known.
ALLOWED = {201: {1}, 409: {0, 1}, None: {0}}


class Story:
    """What is added for one user: the user with an instrument, another instrument, a card."""

    def __init__(self, name):
        self.name, self.token, self.card = name, None, None
        self.user = new_card(email=name + "@example.com", use_case="default")
        self.statuses = []
        self.is_repeated = False

    def go_on(self, served):
        """Asks for what has no answer yet. Whether the story goes on after it."""
        key = f"{self.name}-{len(self.statuses)}"
        if not self.statuses:
            status, body = served.provider("POST /v1/users", self.user, key)
            self.token = body.get("token")
        elif len(self.statuses) == 1:
            request = f"POST /v1/users/{self.token}/instruments?use_case=private"
            status, body = served.provider(request, new_card(), key)
        else:
            status, body = served.backend(f"POST {GUEST}/cards", registered_card(self.name), key)
            self.card = body.get("credit_card")
        if status != 201 and not (status == 409 and self.is_repeated):
            raise SystemExit(f"An addition was answered with {status}.")
        self.statuses.append(status)
        self.is_repeated = False
        return status == 201 and len(self.statuses) < 3

    def wrong(self, served, cards):
        """What is there and should not be, or the other way round."""
        user, instrument, card = self.statuses + [None] * (3 - len(self.statuses))
        found = [each for each in cards if each["external_identifier"] == self.name]
        if len(found) not in ALLOWED[card] or (card == 201 and found != [self.card]):
            yield "card"
        # Without an answer, only another card for the same user tells the token.
        token = self.token or served.provider("POST /v1/users", self.user)[1]["token"]
        for use_case, status in ("default", user), ("private", instrument):
            request = f"GET /v1/users/{token}/instruments?use_case={use_case}"
            count = len(served.provider(request)[1]["instruments"])
            if count - (use_case == "default" and not self.token) not in ALLOWED[status]:
                yield use_case + " instrument"


class Client:
    """Tells one story after the other, across all kills."""

    def __init__(self, name):
        self.name, self.stories, self.is_telling = name, [], False

    def add(self, served):
        if not self.is_telling:
            self.stories.append(Story(f"{self.name}-{len(self.stories)}"))
        self.is_telling = True
        self.is_telling = self.stories[-1].go_on(served)

    def add_until_killed(self, served, answered):
        try:
            while True:
                self.add(served)
                answered.release()
        except Unanswered:
            self.stories[-1].is_repeated = True
        finally:
            # Nobody waits for answers that do not come any more.
            answered.release(MOST_ANSWERS)


def main(command, kills):
    clients = [Client("abcd"[number]) for number in range(CLIENTS)]
    with tempfile.TemporaryDirectory() as folder, ThreadPoolExecutor(CLIENTS) as pool:
        served = Served(command, folder)
        served.start()
        served.backend("PUT " + GUEST)
        for _ in range(kills):
            answered = threading.Semaphore(0)
            adding = [pool.submit(each.add_until_killed, served, answered) for each in clients]
            for _ in range(random.randint(0, MOST_ANSWERS)):
                answered.acquire()
            served.end(signal.SIGKILL)
            for each in adding:
                each.result()
            served.start()
        for client in clients:
            client.add(served)
        cards = served.backend(f"GET {GUEST}/cards")[1]["credit_cards"]
        stories = [story for client in clients for story in client.stories]
        wrong = [what for story in stories for what in story.wrong(served, cards)]
        served.end()
    statuses = Counter(status for story in stories for status in story.statuses)
    print(f"{kills} kills: {statuses[201]} additions were answered, "
          f"and {statuses[409]} were in use when they were repeated.")
    for what, times in Counter(wrong).items():
        print(f"{times} times wrong: {what}")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], int(sys.argv[2])))
