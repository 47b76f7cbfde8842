"""The built command from outside: what it refuses, prints and leaves. PAYLEVENKIT names it."""
import fcntl
import json
import os
import pathlib
import signal
import sqlite3
import subprocess
import termios
import unittest

from command import TYPED, Command, card_data

GUEST = "sign-in guest@example.com"
TYPED_CARD = "add --month 12 --year 2099 --holder Guest"
VISA = "4" + "1" * 15


class CommandTest(unittest.TestCase):
    def command(self, before=""):
        command = Command(os.environ["PAYLEVENKIT"], before)
        self.addCleanup(command.__exit__)
        return command

    def document(self, command, line, status=0, typed=""):
        process = command.run(line + " --json", typed)
        self.assertEqual(process.returncode, status, line)
        return json.loads(process.out)


class BadInput(CommandTest):
    # What standard error has (2, usage), or the outcome (1, an error of the operation).
    ROWS = [
        (1, "The card was not added.", TYPED_CARD, "4111letters11111\n123\n"),
        (1, "The card was declined.", "orphan --test-card declined"),
        (2, "No card number was given", TYPED_CARD),
        (2, "No security code was given", TYPED_CARD, VISA + "\n"),
        (2, "no test card of that name", "add --test-card nobody"),
        (2, "looks like a card number", "add 4111-1111-1111-1111"),
        (2, "looks like a card number", "add '4111\u2009１１１１\u00a01111_1111'"),
        (2, "The option --cvv is not known", "add --cvv 907"),
        (2, "'crads' is not known; did you mean `paylevenkit cards`", "crads"),
        (2, "A command is needed", "907"),
        (2, "Value ************1112 not in range", "trace --last 4111111111111112"),
        (2, "A whole number from 0 on is needed", "--seed 18446744073709551616 cards"),
        (2, "--yes", "reset"),
        (2, "Say --provider URL", "sandbox list"),
        (2, "A store has a name", "--store '' cards"),
    ]

    def test_gets_one_clear_sentence_and_changes_nothing(self):
        command = self.command(GUEST + "; add --test-card visa")
        for number, (status, says, line, *typed) in enumerate(self.ROWS):
            # By its number, since some lines look like card data.
            with self.subTest(row=number):
                look = command.store.read_bytes if status == 2 else lambda: command.run("cards").out
                before = look()
                process = command.run(line, *typed)
                # Neither a number nor a code that was typed at the wrong place is repeated.
                command.search((process.out + process.err).encode(), searches=[card_data(VISA, "907")])
                self.assertEqual(process.returncode, status)
                text, other = (process.err, process.out) if status == 2 else (process.out, process.err)
                self.assertIn(says, text)
                self.assertEqual(other, "")
                if status == 2:
                    self.assertRegex(text, r"\A[^\n]*\.\n\Z")
                self.assertTrue(look() == before)

    def test_is_a_document_where_one_is_expected_and_leaves_no_new_store(self):
        for line in ("add --fly", "cards", "sign-in nobody", "demo --provider x"):
            command = self.command()
            error = self.document(command, line, 2)["error"]
            self.assertEqual((error["number"], type(error["message"])), (2, str), line)
            self.assertFalse(command.store.exists() or command.store.with_suffix(".sqlite.log").exists())
        command = self.command(GUEST)
        self.assertEqual(self.document(command, "add --without card", 1)["error"]["number"], 1)
        self.assertEqual(self.document(command, "fault arm addPaymentInstrument error")["fault"]["number"], 1)
        numbers = f"--seed 1234567890123 --store {command.folder}/run-20261122075301.sqlite "
        self.assertEqual(command.run(numbers + GUEST).returncode, 0, "that no card has")

    def test_keeps_a_new_store_on_which_another_may_work(self):
        command = self.command()
        folder = os.open(command.folder, os.O_RDONLY)
        fcntl.flock(folder, fcntl.LOCK_SH)
        self.assertEqual(command.run("cards").returncode, 2)
        self.assertTrue(command.store.exists())
        os.close(folder)


class Reset(CommandTest):
    def test_keeps_what_is_no_store_and_removes_one_of_another_version(self):
        letter, newer = self.command(), self.command(GUEST)
        letter.store.write_text("a letter to a friend, and long enough to be looked at twice, with one "
                                "more line of it to come")
        # SQLite keeps the application's version in the bytes 60 to 63 of its header.
        content = newer.store.read_bytes()
        newer.store.write_bytes(content[:60] + b"\0\0\0\x63" + content[64:])
        for command, status in ((letter, 2), (newer, 0)):
            self.assertEqual(command.run("cards").returncode, 2)
            self.assertEqual(command.run("reset --yes").returncode, status)
            self.assertEqual(command.store.exists(), command is letter)

    def test_takes_all_that_a_server_leaves_and_nothing_while_one_works_on_the_store(self):
        command = self.command(GUEST)
        left = [pathlib.Path(f"{command.store}{end}") for end in (
            "-wal", "-shm", ".log", ".ports.json", ".ports.json.new", ".sandboxes/a.sqlite",
            ".sandboxes/snapshots/b.sqlite")]
        for path in left:
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text("left by a server")
        with open(f"{command.store}.lock", "a", encoding="ascii") as lock:
            fcntl.flock(lock, fcntl.LOCK_EX)
            for line in ("reset --yes", "serve"):
                refused = command.run(line)
                self.assertEqual((refused.returncode, refused.err), (
                    2, f"paylevenkit: Another server works on the store '{command.store}'.\n"))
            self.assertTrue(left[-1].exists() and left[-2].exists() and left[-3].exists())
        self.assertEqual(command.run("reset --yes").returncode, 0)
        self.assertEqual(list(command.folder.iterdir()), [])


class Output(CommandTest):
    def test_names_the_fault_that_keeps_a_reply_when_all_firings_that_are_kept_are_there(self):
        command = self.command(GUEST + "; fault arm createUserToken never")
        store = sqlite3.connect(command.store)
        with store:
            store.executemany("INSERT INTO firings (fault, operation, kind) VALUES (?, '', '')", [(9,)] * 10_000)
        store.close()
        self.assertIn("(armed fault 1)", command.run("add --test-card visa").out)

    def test_that_cannot_be_written_is_a_failure(self):
        command = self.command(GUEST)
        for line in ("cards", "--help", "sign-out --json"):
            with open("/dev/full", "w", encoding="ascii") as full:
                self.assertEqual(command.run(line, stdout=full).returncode, 1, line)

    def test_suits_the_terminal(self):
        command = self.command(GUEST + "; add --test-card visa --holder A\x1b[31m")
        shown = command.run("cards").out
        self.assertIn("A\\x1b[31m", shown)
        self.assertNotIn("\x1b", shown)
        command.environment["COLUMNS"] = "40"
        self.assertIn("…\n", command.run("cards").out)
        del command.environment["COLUMNS"]
        command.environment["LC_ALL"] = "C"
        plain = command.run("sync").out
        self.assertIn("visa **** 1111", plain)
        self.assertTrue(plain.isascii())

    def test_is_one_complete_JSON_document_of_every_command(self):
        command = self.command()
        for line in (GUEST, "add --test-card visa", "cards", "orphan --test-card visa", "sync",
                     "orphan --test-card amex", "sync --by authorization", "orphan --test-card amex",
                     "sync --by reachability", "instruments", "network off", "fault", "fault firings",
                     "fault clear", "trace --last 4", "sign-out", "reset --yes", "demo --test-cards"):
            document = self.document(command, line)
            self.assertLessEqual({"operation", "outcome", "error", "timeline", "backend", "provider",
                                  "agreement"}, document.keys(), line)
            self.assertTrue(document["agreement"] or not line.startswith("sync"), line)

    def test_of_the_demo_ends_at_the_first_step_that_fails_and_needs_a_fresh_store(self):
        command = self.command("demo")
        self.assertEqual(command.run("demo").returncode, 2)
        stopped = self.document(self.command(), "demo --typed", 1, "4242 not a number\n123\n")
        self.assertEqual((len(stopped["steps"]), stopped["outcome"]), (2, "failed"))

    def test_holds_nothing_of_typed_cards_with_all_logging_on(self):
        command = self.command()
        typed = "".join(f"{number}\n{code}\n" for number, code in TYPED.items())
        shown = command.run("--console-log demo --typed", typed)
        self.assertEqual(shown.returncode, 0)
        self.assertIn("synchronized", shown.err, "nothing was logged")
        self.assertIn("8431", shown.out, "the typed card was not used")
        command.run_all("; ".join(f"add --json --console-log --test-card {card}"
                                  for card in ("mastercard", "declined", "no-token")))
        command.run(TYPED_CARD, "3714 4963 5398 430\n7913\n")
        command.run_all("trace --last 99; cards --json")
        for seen in ("371449", "3714 49 of a card", "code 7913", "49-6353 98431"):
            self.assertRaises(AssertionError, command.search, seen.encode())

    def test_lies_in_the_users_data_folder_which_is_theirs_alone(self):
        command = self.command()
        command.arguments = []
        self.assertEqual(command.run(GUEST).returncode, 0)
        folder = command.folder / "paylevenkit"
        self.assertTrue((folder / "store.sqlite").exists())
        self.assertEqual(folder.stat().st_mode & 0o777, 0o700)
        self.assertEqual(command.run("reset --yes").returncode, 0)
        self.assertEqual(list(folder.iterdir()), [])


class Elsewhere(CommandTest):
    LINES = (
        GUEST, "add --test-card visa", "add --test-card mastercard --use-case business",
        "add --test-card declined", "add --test-card no-identifier", "add --test-card backend-refused",
        "cards", "instruments", "update ID --city Köln", "update crd_none --city Bonn", "delete ID",
        "orphan --test-card amex", "sync", "scenario same-card-twice", "scenario half-deleted", "sync",
        "fault arm addPaymentInstrument delay --delay 1 --times 2 --use-case private",
        "fault arm fetchGuestCreditCards error --code 4711", "fault arm createUserToken no-list",
        "fault", "sync", "fault firings", "fault clear", "scenario lost-token", "sync",
        "network off", "add --test-card visa", "network on", "sign-in other@example.com", "cards", "sign-out")

    def test_services_do_as_the_embedded_ones_do(self):
        here, there = self.command(), self.command()
        urls = dict(line.split() for line in there.serve("--seed 7").splitlines())
        there.arguments += ["--backend", urls["backend"], "--provider", urls["provider"]]

        def outcome(command, line):
            process = command.run(line + " --json --seed 7")
            document = json.loads(process.out)
            # Calls overlap.
            steps = sorted((step["from"], step["to"], step["what"], step["result"])
                           for step in document.pop("timeline", []) if "kit" in (step["from"], step["to"]))
            return process.returncode, document, steps

        for line in self.LINES:
            self.assertEqual(outcome(there, line), outcome(here, line), line)
        there.end()
        for line in ("cards", "fault"):
            self.assertRegex(there.run(line).err, r"\Apaylevenkit: [^\n]*\.\n\Z")


class Prompt(CommandTest):
    NUMBER = "card number (not shown): "
    # What is asked for and typed, and how the command ends.
    ROWS = [
        ("add", 0, [(NUMBER, "4111 1111 1111 1111\n"), ("security code (not shown): ", "907\n"),
                    ("month of expiry: ", "12\n"), ("year of expiry: ", "2099\n"),
                    ("name on the card: ", "A Guest\n")]),
        ("add", -signal.SIGINT, [(NUMBER, "4111\x03")]),
        ("add", 2, [(NUMBER, "\x04")]),
        ("demo", -signal.SIGINT, [("Card number, or Enter for the test card visa: ", "\x03")]),
    ]

    def test_shows_neither_number_nor_code_and_typing_is_seen_again_on_every_way_out(self):
        try:
            person, terminal = os.openpty()
        except OSError:
            self.skipTest("There are no pseudo-terminals here.")
        sees_typing = lambda: bool(termios.tcgetattr(terminal)[3] & termios.ECHO)
        for line, status, prompts in self.ROWS:
            command = self.command(GUEST)
            if line == "demo":
                command.arguments = []
            # The terminal is its controlling one, whose keys interrupt it.
            process = command.start(line, "setsid", "--ctty", stdin=terminal, stderr=terminal,
                                    stdout=subprocess.PIPE)
            self.addCleanup(process.kill)
            screen = b""
            for prompt, keys in prompts:
                read = len(screen)
                while prompt.encode() not in screen[read:]:
                    screen += os.read(person, 1)
                self.assertEqual(sees_typing(), prompt.startswith(("month", "year", "name")), prompt)
                os.write(person, keys.encode())
            command.search(process.communicate()[0].encode())
            self.assertEqual(process.returncode, status, line)
            self.assertTrue(sees_typing(), line)
            self.assertNotRegex(screen, b"111|907", line)
            command.run("cards")


if __name__ == "__main__":
    unittest.main()
