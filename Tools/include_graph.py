"""The order of the plugin's folders: what includes what, and never the other way round."""

import os
import posixpath
import re

PRIVATE = "Source/Kestrel/Private"

# From the bottom up: a file includes what is in its own folder, or in one above it in this list. Headers in Public are
# free to all.
LAYERS = [
    "KestrelLog.h",
    "Agent/Work",  # what takes several frames, or other threads
    "Agent/Text",  # JSON, and names as they are shown
    "Agent/Files",  # what is done to files and to revision control
    "Agent/Approval",  # what rules allow, ask for and deny
    "Agent/History",  # what is recorded of it, for undo
    "Agent/Blueprints",  # what the folders below it share
    "Agent/Blueprints/Assets",  # found, loaded, compiled, saved
    "Agent/Blueprints/Types",
    "Agent/Blueprints/Read",
    "Agent/Blueprints/Change",
    "Agent/Chat",  # what the user sees and says
    "Agent/Project",  # compiling, scripts, search
    "Agent/Tools",  # the tool table, plans and their review
    "Agent/Backend",  # the client of the service
    "Agent",
    "Mcp",  # the server for other assistants
    "Widget",
    "",
]


def layer_of(path):
    matching = [layer for layer in LAYERS if path == layer or path.startswith(layer + "/") or not layer]
    return LAYERS.index(max(matching, key=len))


def read_includes(root, files):
    """The plugin's private files with those that each includes, by their paths below Private."""
    edges = {}
    for path in files:
        with open(os.path.join(root, path), encoding="utf-8") as file:
            names = re.findall(r'^#include "([^"]+)"', file.read(), re.MULTILINE)
        below = posixpath.relpath(path, PRIVATE)
        edges[below] = [name for name in names if os.path.exists(os.path.join(root, PRIVATE, name))]
    return edges


def find_cycle(edges):
    """Some files that include each other in a ring; a source counts as its header."""
    def unit(path):
        return os.path.splitext(path)[0]

    graph = {}
    for path, names in edges.items():
        graph.setdefault(unit(path), set()).update(unit(name) for name in names if unit(name) != unit(path))
    done = set()

    def visit(node, trail):
        if node in trail:
            return trail[trail.index(node):] + [node]
        if node in done:
            return None
        for following in sorted(graph.get(node, ())):
            cycle = visit(following, trail + [node])
            if cycle:
                return cycle
        done.add(node)
        return None

    for node in sorted(graph):
        cycle = visit(node, [])
        if cycle:
            return cycle
    return None


def check(root, files):
    edges = read_includes(root, files)
    problems = [f"{path} ({LAYERS[layer_of(path)] or 'Private'}) includes {name}, which stands higher"
                for path, names in sorted(edges.items()) for name in names if layer_of(path) < layer_of(name)]
    cycle = find_cycle(edges)
    if cycle:
        problems.append("these include each other: " + " -> ".join(cycle))
    return problems
