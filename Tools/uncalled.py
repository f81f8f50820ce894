"""Functions of the host that nothing in the repository names but their own declaration and definition.

By name: a function is missed whose name another one has, and none is reported that is called.
"""

import collections
import os
import re

HEADERS = re.compile(r"Host/\w+/(Public|Internal|Private)/.*\.h$")
# What games are promised (Docs/GameModules.md); their code is not in the repository.
PROMISED = re.compile(r"Host/(Engine|AIModule)/Public/|Host/Core/Public/(Containers|Internationalization|Math|Misc|Modules|Templates)/"
                      r"|Host/CoreUObject/Public/UObject/(Object|ObjectPtr|ObjectSaveContext|UObjectGlobals|WeakObjectPtrTemplates)\.h")
COMMENT = re.compile(r"//[^\n]*|/\*.*?\*/", re.DOTALL)
WORD = re.compile(r"[A-Za-z_]\w*")
DECLARATION = re.compile(
    r"^\t*(?!return\b|else\b|using\b|typedef\b|case\b|throw\b|delete\b|new\b|goto\b|#)"
    r"(?:\[\[\w+\]\]\s*)?[A-Za-z_][\w:<>,*&\s\[\]]*[\s*&]([A-Za-z_]\w*)\(")
DEFINITION = re.compile(r"^[A-Za-z_][\w:<>,*&\s]*::([A-Za-z_]\w*)\(")
OPERATOR = re.compile(r"\boperator\b")

Function = collections.namedtuple("Function", "name file line")


def without_comments(text):
    return COMMENT.sub(lambda match: "\n" * match.group().count("\n"), text)


def declarations(path, lines):
    """Functions that a header of the host declares; those that scripts and Blueprints call by name are left out."""
    if PROMISED.match(path):
        return
    for number, line in enumerate(lines, 1):
        match = DECLARATION.match(line)
        reflected = any("UFUNCTION(" in above for above in lines[max(0, number - 3):number - 1])
        if match and not OPERATOR.search(line) and not reflected:
            yield Function(match.group(1), path, number)


def find(root, paths):
    """paths: of all texts that may name a function, relative. Returns the uncalled functions in order."""
    named = collections.Counter()
    declared = []
    for path in paths:
        with open(os.path.join(root, path), encoding="utf-8", errors="replace") as file:
            text = file.read()
        if path.endswith((".h", ".cpp")):
            text = without_comments(text)
        lines = text.split("\n")
        named.update(WORD.findall(text))
        if HEADERS.match(path):
            found = list(declarations(path, lines))
            declared += found
            named.subtract(function.name for function in found)
        elif path.startswith("Host/") and path.endswith(".cpp"):
            named.subtract(match.group(1) for match in map(DEFINITION.match, lines) if match)
    return sorted((function for function in declared if named[function.name] <= 0),
                  key=lambda function: (function.file, function.line))
