"""`paylevenkit serve` in a process of its own, and clients that keep their connections."""
import http.client
import json
import os
import re
import subprocess
import threading

GUEST = "/v1/guests/guest@example.com"


class Served:
    """The server on one store."""

    def __init__(self, command, folder, *options):
        self.connections = threading.local()
        self.process = subprocess.Popen(
            [command, "--store", os.path.join(folder, "store.sqlite"), "serve", *options],
            stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
        # It prints where it listens as soon as it does.
        printed = [self.process.stderr.readline().split() for _ in range(3)]
        if not all(printed):
            raise SystemExit("The server does not start.")
        self.urls = dict(printed)

    def end(self):
        self.process.terminate()
        self.process.stderr.close()
        if self.process.wait() != 0:
            raise SystemExit("The server did not end as it should.")

    def port(self, name):
        return int(self.urls[name].rpartition(":")[2])

    def memory(self):
        """What it has in memory, in KiB."""
        with open(f"/proc/{self.process.pid}/status", encoding="ascii") as status:
            return int(re.search(r"VmRSS:\s+(\d+)", status.read())[1])

    def processor_seconds(self):
        """What it has used."""
        with open(f"/proc/{self.process.pid}/stat", encoding="ascii") as stat:
            used = stat.read().rpartition(")")[2].split()[11:13]
        return sum(map(int, used)) / os.sysconf("SC_CLK_TCK")

    def forget_connections(self):
        """Of this thread, after a while in which the server may have closed them."""
        while self.connections.__dict__:
            self.connections.__dict__.popitem()[1].close()

    def wanted(self, status, name, request, body=None, **headers):
        """The body of a reply that has to have that status. Each thread keeps a connection to each
        listener."""
        method, target = request.split(" ")
        sent = {"X-API-Key": "any", "Content-Type": "application/json"} | headers
        kept = self.connections.__dict__
        if name not in kept:
            kept[name] = http.client.HTTPConnection("127.0.0.1", self.port(name), timeout=60)
        kept[name].request(method, target, json.dumps(body or {}), sent)
        reply = kept[name].getresponse()
        found = json.loads(reply.read() or b"{}")
        if reply.status != status:
            raise SystemExit(f"{request} is {reply.status}, not {status}: {found.get('error')}")
        return found


def new_card(**user):
    """As the provider takes it; for a new user with `email` and `use_case`."""
    return user | {"credit_card": {"number": "4" + "1" * 15, "expiry_month": "12",
                                   "expiry_year": "2099", "security_code": "123",
                                   "card_holder": "A Guest"}}


def registered_card(identifier):
    """As the backend takes it."""
    return {"credit_card": {"last_four_digits": "1111", "brand": "visa", "use_case": "default",
                            "external_identifier": identifier, "card_holder": "A Guest",
                            "expiry_month": "12", "expiry_year": "2099"}, "provider": 0}


def letters(number):
    """A number in letters, so that none looks like a card number."""
    return str(number).translate(str.maketrans("0123456789", "abcdefghij"))
