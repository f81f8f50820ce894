"""Function bodies that do not fit on a screen."""

import re

MAX_LINES = 60

# As clang-format lays it out: a brace that opens a body stands alone on its line, and what closes it at its indentation.
OPENS = re.compile(r"^(\t*)\{$")
NO_FUNCTION = re.compile(r"^\t*(?:(?:template\s*<.*>\s*)?(?:class|struct|union|enum|namespace|extern)\b|\{|\}|else\b|do$)")
# A list of test cases: each case is a function of its own.
TEST_LIST = re.compile(r"^\w+ \w+::Define\(\)$")
CASE = re.compile(r"^(\t+)(?:It|LatentIt|BeforeEach|AfterEach)\(.*\{$")
TABLE = re.compile(r"^(\t+).*(?:=|return) \{$")
RAW_STRING = re.compile(r'\bR"(\w*)\(.*?\)\1"', re.DOTALL)


def without_raw_strings(text):
    return RAW_STRING.sub(lambda match: '""' + "\n" * match.group().count("\n"), text)


def head_of(lines, brace):
    """The line at the brace's indentation with which its statement or declaration begins."""
    tabs = len(lines[brace]) - len(lines[brace].lstrip("\t"))
    for number in range(brace - 1, -1, -1):
        line = lines[number]
        indented = len(line) - len(line.lstrip("\t"))
        if not line or (indented == tabs and line.lstrip("\t")[:1] in "{}"):
            return ""
        if indented == tabs and line.lstrip("\t")[:1] not in (",", ":"):
            return line
    return ""


def is_function(head):
    return "(" in head and not NO_FUNCTION.match(head) and not TEST_LIST.match(head)


def count(body):
    """The lines of a body, without the rows of the tables in it: those are data, however many."""
    total = 0
    table = None
    for line in body:
        if table is None:
            total += 1
            table = TABLE.match(line)
        elif re.match(table.group(1) + r"\}", line):
            table = None
    return total


def find(text):
    """Yields the line and the length of each body that is longer than MAX_LINES. What is inside one is not asked."""
    lines = without_raw_strings(text).split("\n")
    number = 0
    while number < len(lines):
        match = OPENS.match(lines[number]) or CASE.match(lines[number])
        if not match or (OPENS.match(lines[number]) and not is_function(head_of(lines, number))):
            number += 1
            continue
        end = next((at for at in range(number + 1, len(lines)) if re.match(match.group(1) + r"\}", lines[at])), None)
        if end is None:
            return
        length = count(lines[number + 1:end])
        if length > MAX_LINES:
            yield number + 1, length
        number = end + 1


def check(files):
    """files: pairs of path and text. Returns a sentence for each body that is too long."""
    return [f"{path}:{line}: a function body of {length} lines; {MAX_LINES} fit on a screen"
            for path, text in files for line, length in find(text)]
