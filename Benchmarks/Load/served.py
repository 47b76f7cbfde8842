"""`paylevenkit serve` in a process of its own, and clients that keep their connections."""
import http.client
import json
import os
import random
import re
import signal
import subprocess
import threading

GUEST = "/v1/guests/guest@example.com"


class Unanswered(Exception):
    """The connection ended before the reply was whole."""


class Served:
    """The server on one store, under the same ports every time that it is started."""

    def __init__(self, command, folder, *options):
        self.command, self.store = command, os.path.join(folder, "store.sqlite")
        self.options, self.ports, self.process = options, None, None
        self.connections = threading.local()

    def start(self):
        for _ in range(1 if self.ports else 20):
            # Below those that connections get, so that nothing has them when they are wanted again.
            ports = self.ports or random.sample(range(10_000, 30_000), 3)
            names = ("backend", "provider", "console")
            chosen = [text for name, port in zip(names, ports)
                      for text in (f"--{name}-port", str(port))]
            self.process = subprocess.Popen(
                [self.command, "--store", self.store, "serve", *chosen, *self.options],
                stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
            # It prints where it listens as soon as it does.
            printed = [self.process.stderr.readline() for _ in ports]
            if all(line.endswith(f":{port}\n") for port, line in zip(ports, printed)):
                self.ports = ports
                return self
            self.process.kill()
            self.process.wait()
        raise SystemExit("The server does not start.")

    def end(self, how=signal.SIGTERM):
        self.process.send_signal(how)
        self.process.stderr.close()
        if self.process.wait() not in (0, -how):
            raise SystemExit("The server did not end as it should.")

    def url(self, name):
        return f"http://127.0.0.1:{self.ports[('backend', 'provider', 'console').index(name)]}"

    def memory(self):
        """What it has in memory, in KiB."""
        with open(f"/proc/{self.process.pid}/status", encoding="ascii") as status:
            return int(re.search(r"VmRSS:\s+(\d+)", status.read())[1])

    def processor_seconds(self):
        """What it has used."""
        with open(f"/proc/{self.process.pid}/stat", encoding="ascii") as stat:
            used = stat.read().rpartition(")")[2].split()[11:13]
        return sum(map(int, used)) / os.sysconf("SC_CLK_TCK")

    def backend(self, request, body=None, **headers):
        return self.ask(0, request, body, headers)

    def provider(self, request, body=None, **headers):
        return self.ask(1, request, body, headers)

    def ask(self, port, request, body, headers):
        """The status of the reply, and its body. Each thread keeps a connection to each port."""
        method, target = request.split(" ")
        sent = {"X-API-Key": "any", "Content-Type": "application/json"}
        sent |= {name.replace("_", "-"): value for name, value in headers.items()}
        kept = self.connections.__dict__
        if port not in kept:
            kept[port] = http.client.HTTPConnection("127.0.0.1", self.ports[port], timeout=60)
        try:
            kept[port].request(method, target, json.dumps(body or {}), sent)
            reply = kept[port].getresponse()
            text = reply.read()
        except (OSError, http.client.HTTPException) as failure:
            kept.pop(port).close()
            raise Unanswered from failure
        return reply.status, json.loads(text) if text else {}

    def forget_connections(self):
        """Of this thread, after a while in which the server may have closed them."""
        while self.connections.__dict__:
            self.connections.__dict__.popitem()[1].close()

    def wanted(self, status, port, request, body=None, **headers):
        """The body of a reply that has to have that status."""
        found, reply = self.ask(("backend", "provider").index(port), request, body, headers)
        if found != status:
            raise SystemExit(f"{request} is {found}, not {status}: {reply.get('error')}")
        return reply


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
