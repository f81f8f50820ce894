"""What ./kestrel bench measures: for each path a project to measure it in, and the program that it is compared with.

A size of 1 is that of a large game.
"""

import json
import math
import os
import random
import subprocess

import steps


class Case:
    """A path, with the name of its test in the editor."""

    test = ""
    peer = ""  # what it is compared with
    aim = math.inf  # of the ratio to the peer
    seconds_aim = math.inf
    memory_aim = math.inf  # bytes above those of an editor with nothing to do
    growth_base = None  # the smallest size that growth is measured at, a hundredth of the largest; None: it is not
    growth_aim = 1.1  # of the exponent
    limit = ""  # what no implementation can be faster than

    def __init__(self):
        self.name = self.test

    def make(self, folder, size):
        """Makes the project, some parts of it in proportion to the size."""

    # run_peer(folder, run, output) does the peer's work once. Without it, the test in the editor has a peer of its own.


def scaled(number, size):
    return max(1, round(number * size))


class FirstRequest(Case):
    """The body of the first request, against `find` printing the same tree."""

    test = "FirstRequest"
    peer = "find printing the same tree"
    aim = 1.2
    growth_base = 0.1
    limit = "one system call a folder and one a file"
    num_folders = 5000
    num_files = 100_000
    extensions = ("cpp", "h", "uasset", "ini", "json")

    def make(self, folder, size):
        """A game's tree: 10 areas of 20 levels of 25 rooms, twenty files each."""
        per_folder = self.num_files // self.num_folders
        for number in range(scaled(self.num_folders, size)):
            path = os.path.join(folder, "Content", f"Area{number % 10}", f"Level{number // 10 % 20:02}",
                                f"RoomOfLevel{number // 200:02}")
            os.makedirs(path)
            for index in range(per_folder):
                extension = self.extensions[index % len(self.extensions)]
                name = f"AssetNumber{index:02}OfRoom{number}.{extension}"
                os.close(os.open(os.path.join(path, name), os.O_CREAT | os.O_WRONLY))

    def run_peer(self, folder, _run, output):
        subprocess.run(["find", folder], stdout=output, check=True)


class NextRequest(FirstRequest):
    """The same, when no folder has changed since the request before."""

    test = "NextRequest"
    aim = 0.1
    limit = "one system call a folder"


class FindReference(Case):
    """A name looked for in all sources, against `rg -il`, both on all cores."""

    test = "FindReference"
    peer = "rg -il"
    aim = 1.3
    growth_base = 0.1
    limit = "each file read once: three system calls, and its bytes through the memory"
    num_files = 20_000
    bytes_per_file = 10_000
    files_per_hit = 100

    def make(self, folder, size):
        # Words of a program's usual kind; a fixed seed, so that every run searches the same text.
        words = random.Random(1)
        vocabulary = ["float", "const", "FVector", "Health", "Damage", "Take", "return", "if", "(", ")", "{", "};", "->",
                      "UPROPERTY()", "Component", "GetWorld()", "Actor", "Character", "static_cast<int32>", "TArray"]
        text = " ".join(words.choices(vocabulary, k=self.bytes_per_file // 6))
        for number in range(scaled(self.num_files, size)):
            path = os.path.join(folder, "Source", "Game", f"Part{number % 100:02}")
            os.makedirs(path, exist_ok=True)
            start = number * 37 % (len(text) // 8)
            body = text[start:] + text[:start]
            hit = "\nFloat TakeDamage(float Amount);\n" if number % self.files_per_hit == 0 else "\n"
            with open(os.path.join(path, f"Thing{number}.{'cpp' if number % 2 else 'h'}"), "w",
                      encoding="utf-8") as file:
                file.write((body + hit)[-self.bytes_per_file:])

    def run_peer(self, folder, _run, output):
        subprocess.run(["rg", "-il", "takedamage", os.path.join(folder, "Source")], stdout=output, check=True)


class FindOnOneThread(FindReference):
    """The same on one thread each."""

    test = "FindOnOneThread"
    peer = "rg -il on one thread"
    aim = 1.1

    def run_peer(self, folder, _run, output):
        subprocess.run(["rg", "-j1", "-il", "takedamage", os.path.join(folder, "Source")], stdout=output, check=True)


class ReplaceText(Case):
    """A name replaced all over a large file, against `sed -i`."""

    test = "ReplaceText"
    peer = "sed -i"
    aim = 1.0
    growth_base = 0.04
    limit = "the text read, converted to UTF-16 and back, compared and written twice: the memory's bandwidth"
    num_bytes = 50_000_000
    names = ("HealthPoints", "LifeEnergy")

    def make(self, folder, size):
        lines = "".join(f"\tValue{number} = Value{number + 1}; // nothing to see here\n" for number in range(100))
        block = lines + f"\t{self.names[0]} = 100.0f;\n"
        for name in ("Large.txt", "Peer.txt"):
            with open(os.path.join(folder, name), "w", encoding="utf-8") as file:
                file.write(block * scaled(self.num_bytes // len(block), size))

    def run_peer(self, folder, run, _output):
        old, new = self.names[run % 2], self.names[1 - run % 2]
        subprocess.run(["sed", "-i", f"s/{old}/{new}/g", os.path.join(folder, "Peer.txt")], check=True)


class PlanEdits(Case):
    """What twenty replacements in files of 1 MB would do, against `sed` printing all twenty results."""

    test = "PlanEdits"
    peer = "sed s///g to the standard output"
    aim = 4.0
    seconds_aim = 0.1
    growth_base = 0.05
    limit = "the memory's bandwidth"
    num_files = 20
    bytes_per_file = 1_000_000

    def make(self, folder, size):
        os.makedirs(os.path.join(folder, "Source"))
        line = "\tconst float Damage = GetWorld()->TakeDamage(Component, Character, 42.0f); // as agreed\n"
        count = scaled(self.bytes_per_file // len(line), size)
        lines = [line.replace("Damage", "HealthPoints", 1) if number % 100 == 0 else line for number in range(count)]
        for number in range(self.num_files):
            with open(os.path.join(folder, "Source", f"File{number}.cpp"), "w", encoding="utf-8") as file:
                file.write("".join(lines))

    def run_peer(self, folder, _run, output):
        files = [os.path.join(folder, "Source", f"File{number}.cpp") for number in range(self.num_files)]
        subprocess.run(["sed", "s/HealthPoints/LifeEnergy/g", *files], stdout=output, check=True)


class CompareLines(Case):
    """Two texts of 20,000 lines compared line by line, against git's smallest difference."""

    test = "CompareLines"
    growth_base = 0.05
    growth_aim = 2.0  # the smallest difference is not linear work: lines times differences
    limit = "the lines read and looked up once each, and the smallest difference found: lines times differences"
    num_lines = 20_000
    memory_aim = 100_000_000

    def __init__(self, what, aim, make_texts):
        super().__init__()
        self.name = f"CompareLines, {what}"
        self.aim = aim
        self.make_texts = make_texts
        self.peer = f"git diff --minimal, {what}"

    def make(self, folder, size):
        for name, lines in zip(("Old.txt", "New.txt"), self.make_texts(random.Random(1), scaled(self.num_lines, size))):
            with open(os.path.join(folder, name), "w", encoding="utf-8") as file:
                file.write("\n".join(lines))

    def run_peer(self, folder, _run, output):
        # 1: there are differences.
        done = subprocess.run(["git", "diff", "--no-index", "--minimal", "Old.txt", "New.txt"], cwd=folder,
                              stdout=output, check=False)
        if done.returncode != 1:
            raise steps.StepFailed("git diff failed")


class CompletePath(Case):
    """A letter typed behind "@" in the prompt, with 100,000 names, against `fzf --filter` on the same names."""

    test = "CompletePath"
    peer = "fzf --filter"
    aim = 1.0
    seconds_aim = 0.016
    growth_base = 0.1
    limit = "each name looked at once"
    num_names = 100_000

    def make(self, folder, size):
        words = random.Random(1)
        parts = ["Health", "Component", "Player", "Door", "Gate", "Moor", "Widget", "Walker", "Harrier", "Menu", "Audio",
                 "Trigger", "Camera", "Quest"]
        folders = ["Source/Moor", "Source/Game/Private", "/Game/Doors", "/Game/Characters/Birds", "Config"]
        with open(os.path.join(folder, "Names.txt"), "w", encoding="utf-8") as file:
            for number in range(scaled(self.num_names, size)):
                name = "".join(words.choices(parts, k=2))
                file.write(f"{words.choice(folders)}/{words.choice(parts)}/{name}{number}{words.choice(['.h', '.cpp', ''])}\n")

    def run_peer(self, folder, _run, output):
        with open(os.path.join(folder, "Names.txt"), encoding="utf-8") as names:
            subprocess.run(["fzf", "--filter", "om"], stdin=names, stdout=output, check=True)


class ReadBlueprint(Case):
    """A Blueprint with 2,000 nodes and 10,000 links read, against Python writing and parsing a document of that size."""

    test = "ReadBlueprint"
    peer = "json.dumps and json.loads"
    aim = 0.25
    growth_base = 0.1
    limit = "the document's text written once"
    num_nodes = 2000
    pins = ("execute", "then", "self", "WorldContextObject", "InString", "bPrintToScreen", "bPrintToLog", "TextColor",
            "Duration", "Key")
    links_per_exec_pin = 5

    def make(self, folder, size):
        os.makedirs(os.path.join(folder, "Content"))
        self.document = self.make_document(scaled(self.num_nodes, size))

    def make_document(self, num_nodes):
        def make_pin(name, index):
            links = [{"Node": "Print String", "Pin": "then"} for _ in range(self.links_per_exec_pin if index < 2 else 0)]
            return {"Name": name, "Value": "true", "Direction": "Input", "Category": "exec", "Connections": links}

        nodes = [{"Title": "Print String", "Class": "K2Node_CallFunction", "Properties": {},
                  "Pins": [make_pin(name, index) for index, name in enumerate(self.pins)]}
                 for _ in range(num_nodes)]
        return {"Name": "BP_Large", "Graphs": [{"Name": "EventGraph", "Class": "EdGraph", "Nodes": nodes}]}

    def run_peer(self, _folder, _run, _output):
        json.loads(json.dumps(self.document, separators=(",", ":")))


class ReadInSteps(ReadBlueprint):
    """The longest step of reading ten times as many nodes, which no frame can be shorter than."""

    test = "ReadInSteps"
    aim = math.inf
    seconds_aim = 0.05
    growth_base = None


class PlanManyTools(Case):
    """What 10,000 tools of one answer would do, a read and a replacement in each of 5,000 files, against half of them."""

    test = "PlanManyTools"
    peer = "half of the tools"
    aim = 2.6
    seconds_aim = 1.0
    growth_base = 0.02
    limit = "each file read once"
    num_files = 5000

    def make(self, folder, size):
        for number in range(scaled(self.num_files, size)):
            path = os.path.join(folder, "Source", f"Part{number % 100}")
            os.makedirs(path, exist_ok=True)
            with open(os.path.join(path, f"File{number}.cpp"), "w", encoding="utf-8") as file:
                file.write("float Health = 1.0f;\n" * 10)


class ManyAssets(Case):
    """20,000 Blueprints on the disk."""

    num_assets = 20_000
    num_folders = 100
    num_nodes = 30

    def make(self, folder, size):
        node = "".join(
            f'      Begin Object Class=/Script/BlueprintGraph.K2Node_CustomEvent Name="Node_{number}"\n'
            f'         NodePosX={number}\n         NodeComment="{"nothing to see here " * 4}"\n      End Object\n'
            for number in range(self.num_nodes))
        for number in range(self.num_folders):
            os.makedirs(os.path.join(folder, "Content", f"Folder{number}"))
        for number in range(scaled(self.num_assets, size)):
            name = f"BP_Thing{number}"
            package = f"/Game/Folder{number % self.num_folders}/{name}"
            tags = {"GeneratedClass": f"/Script/Engine.BlueprintGeneratedClass'{package}.{name}_C'",
                    "ParentClass": "/Script/CoreUObject.Class'/Script/Engine.Actor'", "BlueprintType": "BPTYPE_Normal"}
            header = {"Package": package, "Format": 1, "Needs": [],
                      "Assets": [{"Name": name, "Class": "/Script/Engine.Blueprint", "Tags": tags}]}
            body = (f'Begin Object Class=/Script/Engine.Blueprint Name="{name}" Flags=Public,Standalone,Transactional\n'
                    f'   Begin Object Class=/Script/Engine.EdGraph Name="EventGraph"\n{node}   End Object\n'
                    f'   ParentClass="/Script/CoreUObject.Class\'/Script/Engine.Actor\'"\nEnd Object\n')
            with open(os.path.join(folder, "Content", f"Folder{number % self.num_folders}", f"{name}.uasset"), "w",
                      encoding="utf-8") as file:
                file.write(json.dumps(header, separators=(",", ":")) + "\n" + body)


class LookUpBlueprint(ManyAssets):
    """One Blueprint found by its name, against `find` looking for the file."""

    test = "LookUpBlueprint"
    peer = "find -iname"
    aim = 1.0
    growth_base = 0.01
    limit = "one look into a table"

    def run_peer(self, folder, _run, output):
        subprocess.run(["find", os.path.join(folder, "Content"), "-iname", "bp_thing100.uasset"], stdout=output,
                       check=True)


class ScanContent(ManyAssets):
    """The first lines of all packages read, against all files read whole."""

    test = "ScanContent"
    peer = "cat of all files"
    aim = 6.0
    growth_base = 0.01
    limit = "three system calls a file"

    def run_peer(self, folder, _run, output):
        subprocess.run(f"find '{folder}/Content' -name '*.uasset' -print0 | xargs -0 cat > /dev/null", shell=True,
                       stdout=output, check=True)


class FindInFiles(ManyAssets):
    """A name looked for in 2,000 Blueprints of which none is loaded, against `grep` in their files."""

    test = "FindInFiles"
    peer = "grep -ril"
    aim = 8.0
    growth_base = 0.1
    limit = "each package's file read once"
    num_assets = 2000

    def run_peer(self, folder, _run, output):
        subprocess.run(["grep", "-ril", "thing199", os.path.join(folder, "Content")], stdout=output, check=True)


class FindAgain(FindInFiles):
    """The same once they have been searched."""

    test = "FindAgain"
    aim = 3.0
    limit = "two system calls a package"


class FindInMemory(FindInFiles):
    """The same once they are loaded."""

    test = "FindInMemory"
    aim = 4.0
    limit = "each node's title made once"


class FindInSteps(FindInFiles):
    """The longest step of the search in 20,000 Blueprints, which no frame can be shorter than."""

    test = "FindInSteps"
    aim = math.inf
    seconds_aim = 0.1
    growth_base = None
    num_assets = 20_000


class ModifyBlueprint(Case):
    """A document with 1,000 variables and 200 functions of 20 nodes, against one of half that size."""

    test = "ModifyBlueprint"
    peer = "half of the document"
    aim = 2.3
    seconds_aim = 1.0
    growth_base = 0.02
    limit = "each variable and node made once, and the Blueprint compiled and saved once"

    def make(self, folder, size):
        os.makedirs(os.path.join(folder, "Content"))


class UndoModification(ModifyBlueprint):
    """All of it undone, against the time it took to apply half of it."""

    test = "UndoModification"
    peer = "applying half of it"
    aim = 1.0
    seconds_aim = 1.0


def line(number):
    return f"\tthis is the line of the kind with the number {number};"


def drawn_from(num_kinds):
    """Both texts drawn at random from a few lines."""
    return lambda dice, count: [[line(dice.randrange(num_kinds)) for _ in range(count)] for _ in range(2)]


def a_tenth_changed(dice, count):
    old = [line(number) for number in range(count)]
    return old, [text if dice.random() >= 0.1 else f"{text} // changed" for text in old]


CASES = [
    ReadBlueprint(), ReadInSteps(), LookUpBlueprint(), ScanContent(),
    FindInFiles(), FindAgain(), FindInMemory(), FindInSteps(), ModifyBlueprint(), UndoModification(),
    FirstRequest(), NextRequest(), FindReference(), FindOnOneThread(), ReplaceText(), PlanEdits(), PlanManyTools(), CompletePath(),
    CompareLines("drawn from 50 lines", 0.25, drawn_from(50)),
    CompareLines("drawn from 2,000 lines", 0.1, drawn_from(2000)),
    CompareLines("10 % changed", 1.2, a_tenth_changed),
]
