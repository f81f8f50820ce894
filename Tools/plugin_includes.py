"""Which engine headers each file of the plugin needs, and lacks: what it names it includes itself.

A file may rely on CoreMinimal.h, on the header beside it, on what a class's header must include for its bases, and on a
forward declaration as long as it looks into nothing.
"""

import collections
import os
import posixpath
import re

from clang import cindex

PUBLIC = re.compile(r"Host/\w+/Public/(.*)")
INCLUDE = re.compile(r'^#include [<"]([^">]+)[">]', re.MULTILINE)
FORWARD = re.compile(r"^\s*(?:class|struct|enum class) (\w+)(?: : \w+)?;", re.MULTILINE)
WORD = re.compile(r"\w+")
CLASSES = {cindex.CursorKind.STRUCT_DECL, cindex.CursorKind.CLASS_DECL, cindex.CursorKind.CLASS_TEMPLATE,
           cindex.CursorKind.CLASS_TEMPLATE_PARTIAL_SPECIALIZATION}
INDIRECTIONS = {cindex.TypeKind.POINTER, cindex.TypeKind.LVALUEREFERENCE, cindex.TypeKind.RVALUEREFERENCE}
# What the header of each panel must include for its slots.
SLOTS = {"Layout/BasicLayoutWidgetSlot.h", "Layout/Children.h"}

# file: of the plugin; header: as it would be included; name: of what it is needed for;
# looks_inside: a forward declaration is not enough
Need = collections.namedtuple("Need", "file header name looks_inside")
# A header that must include another, since a class in it derives from one there.
Base = collections.namedtuple("Base", "header included")


def is_class(cursor):
    return cursor.kind in CLASSES


def class_of(expression):
    """The declaration of the class whose member is used, as it is written: not the base that declares the member."""
    while expression.kind == cindex.CursorKind.UNEXPOSED_EXPR:  # a conversion to the base
        inside = list(expression.get_children())
        if len(inside) != 1:
            break
        expression = inside[0]
    of = expression.type.get_canonical()
    return (of.get_pointee().get_canonical() if of.kind in INDIRECTIONS else of).get_declaration()


class IncludeReader:
    """Collects what the plugin's files need, from the cursors of their translation units."""

    def __init__(self, relative, read):
        self.relative = relative  # the path below the root of what a cursor declares
        self.read = read  # the text of a path below the root
        self.words = {}
        self.needs = set()
        self.bases = set()
        self.classes_seen = set()

    def note(self, path, cursor):
        """cursor: an expression or a reference in the file."""
        if cursor.kind == cindex.CursorKind.MEMBER_REF_EXPR:
            inside = list(cursor.get_children())
            if inside and self.names(path, cursor.spelling):
                self.add(path, class_of(inside[0]), True)
            return
        target = cursor.referenced
        if cursor.kind == cindex.CursorKind.CALL_EXPR or target is None or not self.names(path, target.spelling):
            return
        owner = target.semantic_parent
        # A member that is named with its class: that has a reference of its own.
        if owner is None or not is_class(owner):
            self.add(path, target, not is_class(target))

    def names(self, path, word):
        """Whether the file says it itself, rather than a macro that it uses."""
        if path not in self.words:
            self.words[path] = set(WORD.findall(INCLUDE.sub("", self.read(path))))
        return word in self.words[path]

    def header_of(self, cursor):
        match = PUBLIC.match(self.relative(cursor))
        return match.group(1) if match else None

    def add(self, path, declaration, looks_inside):
        if declaration is None or not declaration.spelling:
            return
        if is_class(declaration):
            declaration = declaration.get_definition()
            if declaration is None:
                return  # nobody has to know more than its name
            self.note_bases(declaration)
        header = self.header_of(declaration)
        if header:
            self.needs.add(Need(path, header, declaration.spelling, looks_inside))

    def note_bases(self, declaration):
        key = declaration.get_usr()
        if key in self.classes_seen:
            return
        self.classes_seen.add(key)
        for child in declaration.get_children():
            if child.kind == cindex.CursorKind.CXX_BASE_SPECIFIER:
                base = child.type.get_canonical().get_declaration()
                base = base.get_definition() or base
                headers = self.header_of(declaration), self.header_of(base)
                if all(headers):
                    self.bases.add(Base(*headers))
                    self.note_bases(base)


class Includes:
    """What the files include, directly and by right."""

    def __init__(self, read, public_headers, bases):
        self.read = read
        self.public_headers = public_headers  # path of a header by the name under which it is included
        self.included_by_bases = collections.defaultdict(set)
        for base in bases:
            self.included_by_bases[base.header].add(base.included)
        self.core = self.closure({"CoreMinimal.h"}, self.included_by) | SLOTS

    def included_by(self, header):
        path = self.public_headers.get(header)
        return INCLUDE.findall(self.read(path)) if path else []

    @staticmethod
    def closure(names, following):
        found = set()
        waiting = list(names)
        while waiting:
            name = waiting.pop()
            if name not in found:
                found.add(name)
                waiting += following(name)
        return found

    def with_own_header(self, path):
        """The texts of a file and of the header beside it, as far as it includes that."""
        texts = [self.read(path)]
        stem, extension = posixpath.splitext(posixpath.basename(path))
        for name in INCLUDE.findall(texts[0]) if extension == ".cpp" else []:
            own = self.public_headers.get(name, "")
            # One class may have several sources: SKestrelWidgetDiff.cpp has SKestrelWidget.h.
            if own.startswith("Source/") and stem.startswith(posixpath.splitext(posixpath.basename(name))[0]):
                texts.append(self.read(own))
        return texts

    def missing(self, needs):
        """needs: of one file."""
        texts = self.with_own_header(needs[0].file)
        forward = {name for text in texts for name in FORWARD.findall(text)}
        present = self.core | self.closure({name for text in texts for name in INCLUDE.findall(text)},
                                           lambda name: self.included_by_bases[name])
        lacking = collections.defaultdict(set)
        for need in needs:
            if need.header not in present and (need.looks_inside or need.name not in forward):
                lacking[need.header].add(need.name)
        return lacking


def check(read, public_headers, needs, bases):
    """Returns a sentence for each header that a file lacks."""
    includes = Includes(read, public_headers, bases)
    by_file = collections.defaultdict(list)
    for need in needs:
        by_file[need.file].append(need)
    return [f"{file} uses {', '.join(sorted(names))} and does not include {header}"
            for file in sorted(by_file) for header, names in sorted(includes.missing(by_file[file]).items())]


def find_headers(root, folders):
    """folders: from which headers are included. Returns their paths below the root by their names."""
    found = {}
    for folder in folders:
        for parent, _, files in os.walk(os.path.join(root, folder)):
            for file in files:
                if file.endswith(".h"):
                    path = os.path.join(parent, file)
                    found[os.path.relpath(path, os.path.join(root, folder))] = os.path.relpath(path, root)
    return found
