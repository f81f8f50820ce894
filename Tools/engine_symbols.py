"""What the plugin uses of the engine, as the compiler sees it: Docs/EngineSymbols.tsv, and the includes it needs for it."""

import collections
import concurrent.futures
import functools
import os
import re
import sys

sys.path.append("/usr/lib/python3/dist-packages")  # Debian's, whichever Python runs

from clang import cindex

import plugin_includes
import steps

LIBRARY = "/usr/lib/x86_64-linux-gnu/libclang-14.so.1"
PLUGIN = "Source/Kestrel/"
TABLE = os.path.join("Docs", "EngineSymbols.tsv")
ENGINE_HEADER = re.compile(r"Host/(\w+)/Public/(.*)")
OWNER_KINDS = {cindex.CursorKind.STRUCT_DECL, cindex.CursorKind.CLASS_DECL, cindex.CursorKind.CLASS_TEMPLATE,
               cindex.CursorKind.ENUM_DECL, cindex.CursorKind.NAMESPACE}
LOCAL_KINDS = {cindex.CursorKind.PARM_DECL, cindex.CursorKind.TEMPLATE_TYPE_PARAMETER,
               cindex.CursorKind.TEMPLATE_NON_TYPE_PARAMETER, cindex.CursorKind.NAMESPACE}

# file: of the plugin; symbol: qualified; header: as it is included; module: of the engine
Use = collections.namedtuple("Use", "file symbol module header")


def kind_of(cursor):
    """None for kinds that are newer than the bindings."""
    try:
        return cursor.kind
    except ValueError:
        return None


def qualified_name(cursor):
    names = [cursor.spelling]
    owner = cursor.semantic_parent
    while owner is not None and kind_of(owner) in OWNER_KINDS:
        if owner.spelling:
            names.append(owner.spelling)
        owner = owner.semantic_parent
    return "::".join(reversed(names))


class Reader:
    """Reads translation units of the plugin; each file of it is read once."""

    def __init__(self, root):
        self.root = root + os.sep
        self.uses = set()
        self.seen = set()
        self.clang = cindex.Index.create()
        self.includes = plugin_includes.IncludeReader(self.relative, self.read_text)

    def read_text(self, path):
        with open(self.root + path, encoding="utf-8") as file:
            return file.read()

    def relative(self, cursor):
        file = cursor.location.file
        path = os.path.normpath(file.name) if file else ""
        return path[len(self.root):] if path.startswith(self.root) else ""

    def read(self, source, arguments):
        unit = self.clang.parse(source, args=arguments,
                                options=cindex.TranslationUnit.PARSE_DETAILED_PROCESSING_RECORD)
        errors = [str(each) for each in unit.diagnostics if each.severity >= cindex.Diagnostic.Error]
        if errors:
            raise steps.StepFailed(f"{source} cannot be read:\n" + "\n".join(errors[:5]))
        macros = {}
        files = set()
        for cursor in unit.cursor.get_children():
            if kind_of(cursor) == cindex.CursorKind.MACRO_DEFINITION:
                macros[cursor.spelling] = cursor
            path = self.relative(cursor)
            if path.startswith(PLUGIN) and path not in self.seen:
                files.add(path)
                if kind_of(cursor) == cindex.CursorKind.MACRO_INSTANTIATION:
                    self.note(path, macros.get(cursor.spelling))
                else:
                    self.walk(cursor, path)
        self.seen |= files

    def walk(self, cursor, path):
        kind = kind_of(cursor)
        if kind is not None and (kind.is_expression() or kind.is_reference()):
            self.note(path, cursor.referenced)
            self.includes.note(path, cursor)
        for child in cursor.get_children():
            self.walk(child, path)

    def note(self, path, target):
        if target is None or kind_of(target) in LOCAL_KINDS or not target.spelling:
            return
        match = ENGINE_HEADER.match(self.relative(target))
        if match:
            self.uses.add(Use(path, qualified_name(target), *match.groups()))


def read_units(root, units):
    if not cindex.Config.loaded:
        cindex.Config.set_library_file(LIBRARY)
    reader = Reader(root)
    for source, arguments, folder in units:
        os.chdir(folder)
        reader.read(source, arguments)
    return reader.uses, reader.includes.needs, reader.includes.bases


@functools.cache
def read_plugin(commands):
    """commands: lint's. All uses, and what plugin_includes asks for: needs and bases."""
    units = [(os.path.join(steps.ROOT, source), commands.arguments(source)[1:], commands.entries[source]["directory"])
             for source in commands.of(os.path.normpath(PLUGIN))]
    found = set(), set(), set()
    with concurrent.futures.ProcessPoolExecutor(steps.JOBS) as pool:
        shares = [units[each::steps.JOBS] for each in range(steps.JOBS)]
        for share in pool.map(read_units, [steps.ROOT] * steps.JOBS, shares):
            for whole, part in zip(found, share):
                whole |= part
    return found


def table(uses):
    rows = sorted({(use.module, use.header, use.symbol) for use in uses})
    return "".join("\t".join(row) + "\n" for row in [("Module", "Header", "Symbol"), *rows])
