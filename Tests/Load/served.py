"""`paylevenkit serve` in a process of its own, and what clients send to it."""
import json
import os
import random
import signal
import socket
import struct
import subprocess

GUEST = "/v1/guests/guest@example.com"
# Whoever has read all resets its connection, so that none waits out its time and keeps a port.
RESET_ON_CLOSE = struct.pack("ii", 1, 0)


class Unanswered(Exception):
    """The connection ended before the answer was whole."""


class Served:
    """Both services on one store, under the same ports every time that they are started."""

    def __init__(self, command, folder):
        self.command, self.store = command, os.path.join(folder, "store.sqlite")
        self.ports = self.process = None

    def start(self):
        for _ in range(1 if self.ports else 20):
            # Below those that connections get, so that nothing has them when they are wanted again.
            ports = self.ports or random.sample(range(10_000, 30_000), 2)
            self.process = subprocess.Popen(
                [self.command, "--store", self.store, "serve",
                 "--backend-port", str(ports[0]), "--provider-port", str(ports[1])],
                stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
            # It says where it listens as soon as it does.
            said = [self.process.stderr.readline() for _ in ports]
            if all(line.endswith(f":{port}\n") for port, line in zip(ports, said)):
                self.ports = ports
                return
            self.process.kill()
            self.process.wait()
        raise SystemExit("The services do not start.")

    def end(self, how=signal.SIGTERM):
        self.process.send_signal(how)
        self.process.stderr.close()
        if self.process.wait() not in (0, -how):
            raise SystemExit("The services did not end as they should.")

    def backend(self, request, body=None, key=None):
        return ask(self.ports[0], request, body, key)

    def provider(self, request, body=None, key=None):
        return ask(self.ports[1], request, body, key)


def ask(port, request, body, key):
    """The status of the answer, and its body."""
    text = json.dumps(body) if body else ""
    head = [f"{request} HTTP/1.1", "Host: load", "X-API-Key: any", f"Content-Length: {len(text)}",
            "Content-Type: application/json", *([f"Idempotency-Key: {key}"] if key else [])]
    try:
        with socket.create_connection(("127.0.0.1", port)) as connection:
            connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, RESET_ON_CLOSE)
            connection.sendall(("\r\n".join(head) + "\r\n\r\n" + text).encode())
            heard = b"".join(iter(lambda: connection.recv(65_536), b""))
    except OSError as failure:
        raise Unanswered from failure
    head, _, content = heard.partition(b"\r\n\r\n")
    if f"Content-Length: {len(content)}\r\n".encode() not in head + b"\r\n":
        raise Unanswered
    return int(head[9:12]), json.loads(content)


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
