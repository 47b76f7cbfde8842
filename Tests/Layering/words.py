"""Which words stand for what: the list in words.txt, held against every text."""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
LIST = pathlib.Path(__file__).with_name("words.txt")


def replaced_words():
    rows = (row for row in LIST.read_text().split("\n") if row and row[0] != "#")
    return {word for row in rows for word in row.split("=")[0].split()}


def own_words(text, replaced):
    """A name in camel case is several words."""
    words = re.findall("[A-Z]?[a-z]+|[A-Z]+(?![a-z])", text)
    return [word for word in words if word.lower() in replaced]


def texts():
    for file in ROOT.rglob("*"):
        path = file.relative_to(ROOT)
        is_ours = not any(part in ("build", "corpus") or part.startswith(".") for part in path.parts)
        if is_ours and file.is_file() and file != LIST:
            content = file.read_bytes()
            if b"\0" not in content:
                yield path, content.decode()


def main():
    replaced = replaced_words()
    for word in replaced:
        assert own_words(f"a Named{word.capitalize()}", replaced) and own_words(f"{word}_", replaced)
        assert not own_words(f"in{word}", replaced)
    faults = [f"{path}:{number}: {word}" for path, text in texts()
              for number, line in enumerate(text.split("\n"), 1)
              for word in own_words(line, replaced)]
    print("\n".join(faults) or "Every word is the field's.")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
