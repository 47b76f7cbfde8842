"""Which words stand for what: CONTRIBUTING.md's table of words, held against every text."""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
# They name the words that the others must not use.
EXCEPT = {"CONTRIBUTING.md", "Tests/Layering/words.py"}


def replaced_words():
    rows = (ROOT / "CONTRIBUTING.md").read_text().split("## Words")[1].split("\n## ")[0]
    return {word for row in rows.split("\n") if row.startswith("| `")
            for word in re.findall("`(.*?)`", row.split(" | ")[0])}


def own_words(text, replaced):
    """A name in camel case is several words."""
    words = re.findall("[A-Z]?[a-z]+|[A-Z]+(?![a-z])", text)
    return [word for word in words if word.lower() in replaced]


def texts():
    for file in ROOT.rglob("*"):
        path = file.relative_to(ROOT)
        is_ours = not any(part in ("build", "corpus") or part.startswith(".") for part in path.parts)
        if is_ours and file.is_file() and path.as_posix() not in EXCEPT:
            content = file.read_bytes()
            if b"\0" not in content:
                yield path, content.decode()


def main():
    replaced = replaced_words()
    assert len(own_words("a NamedDoor, lanes_ and what the client told", replaced)) == 3
    assert not own_words("indoors, planet, toldo", replaced)
    faults = [f"{path}:{number}: {word}" for path, text in texts()
              for number, line in enumerate(text.split("\n"), 1)
              for word in own_words(line, replaced)]
    print("\n".join(faults) or "Every word is the field's.")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
