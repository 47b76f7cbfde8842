"""The servers that ours is measured beside. `scripts/setup load` fetches them."""
import json
import os
import subprocess
import time
import urllib.request

CARD = {"id": "crd_azyeghwywhuqvvjlhacj", "brand": "visa", "last_four_digits": "1111",
        "use_case": "default", "external_identifier": "ins_jmoxichhszbmmydxjwxu",
        "card_holder": "Erika Mustermann", "expiry_month": "12", "expiry_year": "2099",
        "billing_address": {"street": None, "city": None, "country_code": None, "zip": None,
                            "business_name": None}}
INSTRUMENT = {"identifier": "ins_jmoxichhszbmmydxjwxu", "number": 1,
              "masked_number": "************1111", "brand": "visa", "expiry_month": "12",
              "expiry_year": "2099", "state": 0}
# Both lists, as each peer is asked to return them.
LISTS = {"/v1/guests/{name}/cards": {"credit_cards": [CARD]},
         "/v1/users/{name}/instruments": {"instruments": [INSTRUMENT]}}


def open_api():
    """A document whose examples are the replies."""
    name = {"name": "name", "in": "path", "required": True, "schema": {"type": "string"}}
    return {"openapi": "3.0.3", "info": {"title": "Lists", "version": "1"}, "paths": {
        path: {"parameters": [name], "get": {"responses": {"200": {
            "description": "The list.",
            "content": {"application/json": {"schema": {"type": "object"}, "example": reply}}}}}}
        for path, reply in LISTS.items()}}


def mockoon(port):
    """An environment whose routes have the replies as they are; what is missing is repaired."""
    def route(path, reply):
        response = {"uuid": path + "-200", "body": json.dumps(reply, separators=(",", ":")),
                    "statusCode": 200, "bodyType": "INLINE", "disableTemplating": True,
                    "headers": [{"key": "Content-Type", "value": "application/json"}]}
        return {"uuid": path, "type": "http", "method": "get",
                "endpoint": path[1:].replace("{name}", ":name"), "responses": [response]}
    return {"uuid": "load", "lastMigration": 33, "name": "load", "port": port,
            "hostname": "127.0.0.1", "routes": [route(*each) for each in LISTS.items()],
            "rootChildren": [{"type": "route", "uuid": path} for path in LISTS]}


class Peer:
    """One of them, while it runs."""

    def __init__(self, name, port, command, files, cards, instruments):
        self.name, self.port, self.command, self.files = name, port, command, files
        self.cards, self.instruments, self.process = self.url + cards, self.url + instruments, None

    @property
    def url(self):
        return f"http://127.0.0.1:{self.port}"

    def start(self, folder):
        """Begins anew: nothing of an earlier run is left."""
        for name, content in self.files.items():
            with open(os.path.join(folder, name), "w", encoding="utf-8") as file:
                json.dump(content, file)
        self.process = subprocess.Popen(self.command, cwd=folder, stdout=subprocess.DEVNULL,
                                        stderr=subprocess.DEVNULL, stdin=subprocess.DEVNULL)
        for _ in range(600):
            if self.process.poll() is not None:
                break
            try:
                with urllib.request.urlopen(self.cards) as reply:
                    reply.read()
                return self
            except OSError:
                time.sleep(0.05)
        raise SystemExit(f"{self.name} does not start.")

    def end(self):
        self.process.terminate()
        self.process.wait()


def make_peers(modules, ports):
    """Each as fast as its own options allow: no logs, no checks of what nobody asks for."""
    def run(name, *arguments):
        return [os.path.join(os.path.abspath(modules), ".bin", name), *map(str, arguments)]
    lists = ("/v1/guests/a@b/cards", "/v1/users/tok/instruments")
    return [
        Peer("Prism", ports[0],
             run("prism", "mock", "-m", "false", "-v", "silent", "-p", ports[0], "lists.json"),
             {"lists.json": open_api()}, *lists),
        # 0.17 writes the whole of its file at each change, without a sync.
        Peer("json-server", ports[1], run("json-server", "--quiet", "--port", ports[1], "db.json"),
             {"db.json": {"cards": [CARD], "instruments": [INSTRUMENT], "added": []}},
             "/cards", "/instruments"),
        Peer("Mockoon", ports[2],
             run("mockoon-cli", "start", "--data", "mockoon.json", "--port", ports[2],
                 "--repair", "--disable-log-to-file", "--disable-admin-api"),
             {"mockoon.json": mockoon(ports[2])}, *lists),
    ]
