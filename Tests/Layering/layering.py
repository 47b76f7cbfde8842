"""Who may include whom: ARCHITECTURE.md's table of folders, held against every source."""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
KIT = {"Values", "Async", "Platform", "Host", "Matching", "Models", "Public"}
# Where a header may be included that says "Private to …".
OWNERS = {
    "the sandbox": ["Sandbox/"],
    "the sandbox and the server": ["Sandbox/", "Server/"],
    "the sandbox, server and client": ["Sandbox/", "Server/", "Client/"],
    "the sandbox of both languages": ["Sandbox/", "ObjC/Sandbox/"],
    "the server": ["Server/"],
    "the listener": ["Server/Http/"],
    "the binding": ["ObjC/"],
}
# Arrows that there must not be, of each kind, which show that the check can fail.
FORBIDDEN = {
    "Sandbox/Backend/Backend.cpp": '#include "Sandbox/Provider/Provider.h"',
    "Server/Http/Connection.cpp": "#include <map>\n#include <Client/RemoteHost.h>",
    "ObjC/HLVSDKPaylevenKit/HLVSDKPayleven.h": '#import "Public/HLVSDKPayleven.h"',
    "ObjC/Classes/HLVSDKPayleven.mm": '  # import "ObjC/Sandbox/HLVSandbox.h"',
    "ObjC/Binding/Strings.mm": '#import "../Sandbox/HLVSandbox.h"',
    "Tools/main.cpp": '#include "Server/Api/OpenSandbox.h"',
    "Public/HLVSDKPayleven.cpp": '#include "Unknown/File.h"',
    "Values/Value.cpp": "#include <sqlite3.h>",
}


def read_table():
    """What each folder may include besides itself. One without a row belongs to the one it lies in."""
    rows = (ROOT / "ARCHITECTURE.md").read_text().split("| folder |")[1].split("\n\n")[0]
    table = {}
    for row in rows.split("\n"):
        cells = row.split(" | ")
        for folder in re.findall(r"`(\S+)/`", cells[0]):
            table[folder] = set(" ".join(re.findall("`(.*?)`", cells[-1])).split())
    return table


def owners_of(path, content):
    comment = content.split("#pragma once")[0].replace("\n// ", " ")
    claim = re.search(r"Private to ([^.]*)\.", comment)
    if not claim:
        return [""]
    here = {"this folder": [path.rpartition("/")[0] + "/"]}
    return (OWNERS | here).get(claim[1], ["nobody that is known"])


class Tree:
    def __init__(self):
        self.table, self.sources = read_table(), {}
        for top in ROOT.iterdir():
            if not top.is_dir() or top.name in ("build", "Tests") or top.name.startswith("."):
                continue
            for file in top.rglob("*"):
                if file.suffix in (".h", ".cpp", ".mm", ".m"):
                    self.sources[file.relative_to(ROOT).as_posix()] = file.read_text()
        self.owners = {path: owners_of(path, content) for path, content in self.sources.items()}

    def folder_of(self, path):
        while path and path not in self.table:
            path = path.rpartition("/")[0]
        return path

    def includes(self, path, content):
        """Each header that a source includes, and its folder, which is empty for one of others."""
        for name in re.findall(r'^ *# *(?:include|import) *["<](.*?)[">]', content, re.M):
            beside = f"{path.rpartition('/')[0]}/{name}"
            header = beside if beside in self.sources else name
            yield header, self.folder_of(header)

    def strays(self, path, content):
        """The includes of one source that the table or the header's own claim does not allow."""
        here = self.folder_of(path)
        if not here:
            yield f"{path} lies in no folder of the table"
            return
        # The kit shows the standard library alone; the platform's headers stay behind its own.
        is_kits = path.split("/")[0] in KIT and here != "Platform/Default"
        for header, there in self.includes(path, content):
            if there:
                is_fine = there == here or there in self.table[here]
                is_fine = is_fine and path.startswith(tuple(self.owners.get(header, [""])))
            else:
                is_fine = not re.search("[/.]" if is_kits else r"\.\./", header)
            if not is_fine:
                yield f"{path} includes {header}"

    def unused(self):
        """Arrows of the table that no include takes."""
        left = dict(self.table)
        for path, content in self.sources.items():
            here = self.folder_of(path)
            left[here] = left[here] - {there for _, there in self.includes(path, content)}
        return [f"{here} includes nothing of {there}" for here in left for there in sorted(left[here])]

    def circle(self):
        """Folders that are left when those have gone whose arrows end at folders that went before."""
        left = dict(self.table)
        while ends := [one for one in left if not (left[one] - {one}) & left.keys()]:
            for one in ends:
                del left[one]
        return sorted(left)


def main():
    tree = Tree()
    faults = [stray for path, content in tree.sources.items() for stray in tree.strays(path, content)]
    faults += tree.unused()
    faults += [f"{folder} is in a circle" for folder in tree.circle()]
    faults += [f"the arrow of {path} is not seen" for path, content in FORBIDDEN.items()
               if path not in tree.sources or len(list(tree.strays(path, content))) != 1]
    print("\n".join(faults) or f"{len(tree.sources)} sources are as the table says.")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
