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


class Story:
    """What is added for one user: the user with an instrument, another instrument, a card."""

    def __init__(self, name):
        self.name, self.token, self.card = name, None, None
        self.user = new_card(email=name + "@example.com", use_case="default")
        self.answers = 0

    def go_on(self, served):
        """Asks for what has no answer yet. Whether the story goes on after it."""
        key = f"{self.name}-{self.answers}"
        if self.answers == 0:
            status, body = served.provider("POST /v1/users", self.user, key)
            self.token = body.get("token")
        elif self.answers == 1:
            request = f"POST /v1/users/{self.token}/instruments?use_case=private"
            status, body = served.provider(request, new_card(), key)
        else:
            status, body = served.backend(f"POST {GUEST}/cards", registered_card(self.name), key)
            self.card = body.get("credit_card")
        if status != 201:
            raise SystemExit(f"An addition was answered with {status}.")
        self.answers += 1
        return self.answers < 3

    def wrong(self, served, cards):
        """What is there and should not be, or the other way round."""
        found = [each for each in cards if each["external_identifier"] == self.name]
        if found != ([self.card] if self.answers == 3 else []):
            yield "card"
        for use_case, answers in ("default", 1), ("private", 2):
            request = f"GET /v1/users/{self.token}/instruments?use_case={use_case}"
            if len(served.provider(request)[1]["instruments"]) != (self.answers >= answers):
                yield use_case + " instrument"


class Client:
    """Tells one story after the other, across all kills."""

    def __init__(self, name):
        self.name, self.stories, self.is_telling, self.repeated = name, [], False, 0

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
            self.repeated += 1
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
    print(f"{kills} kills: {sum(story.answers for story in stories)} additions were answered, "
          f"{sum(client.repeated for client in clients)} of them when they were repeated.")
    for what, times in Counter(wrong).items():
        print(f"{times} times wrong: {what}")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], int(sys.argv[2])))
