# The part of the module "unreal" that is easier to say in Python. It runs once, inside the module, before any script.

import enum as _enum
import importlib as _importlib
import sys as _sys
import threading as _threading
import traceback as _traceback


class EnumBase(_enum.Enum):
    """The base of all enums. Entries are compared with entries: a number is none."""


def _make_enum(name, entries, doc):
    made = EnumBase(name, entries, module=__name__)
    made.__doc__ = doc
    return made


class Name:
    """A name of the editor's: letter case does not count. A str is taken wherever one is asked for."""

    __slots__ = ("_text",)

    def __init__(self, text=""):
        self._text = str(text) or "None"

    def __str__(self):
        return self._text

    def __repr__(self):
        return f'Name("{self._text}")'

    def __eq__(self, other):
        if not isinstance(other, (Name, str)):
            return NotImplemented
        return self._text.lower() == str(other).lower()

    def __hash__(self):
        return hash(self._text.lower())

    def __bool__(self):
        return not self.is_none()

    def is_none(self):
        return self._text.lower() == "none"


class Text:
    """A text for people. A str is taken wherever one is asked for."""

    __slots__ = ("_text",)

    def __init__(self, text=""):
        self._text = str(text)

    def __str__(self):
        return self._text

    def __repr__(self):
        return f'Text("{self._text}")'

    def __eq__(self, other):
        if not isinstance(other, (Text, str)):
            return NotImplemented
        return self._text == str(other)

    def __hash__(self):
        return hash(self._text)

    def __bool__(self):
        return bool(self._text)

    def is_empty(self):
        return not self._text


class Array(list):
    """Array(type): an empty list, for scripts that name the type of its elements. Variables are read as plain lists."""

    def __init__(self, type):
        super().__init__()


class Set(set):
    """Set(type): an empty set, as Array is an empty list."""

    def __init__(self, type):
        super().__init__()


class Map(dict):
    """Map(key, value): an empty dict, as Array is an empty list."""

    def __init__(self, key, value):
        super().__init__()


def __getattr__(name):
    found = None if name.startswith("_") else _find_type(name)
    if found is None:
        raise AttributeError(f"module 'unreal' has no attribute '{name}'")
    return found


def __dir__():
    return sorted({*globals(), *_list_types()})


def find_object(outer, name, type=None, follow_redirectors=True):
    """Finds an object in memory: by its full path without an outer, else by its name in the outer."""
    return _find_object(outer, name, type or __getattr__("Object"))


def find_asset(name, type=None, follow_redirectors=True):
    """Finds an asset in memory by its path; "/Game/Folder/Asset" stands for "/Game/Folder/Asset.Asset"."""
    return find_object(None, _complete_asset_path(name), type)


def load_object(outer, name, type=None, follow_redirectors=True):
    """Finds an object by its path, and loads it if need be; one that is not there is a warning, and None."""
    if outer is None:
        return _load_object(name, type or __getattr__("Object"))
    found = find_object(outer, name, type)
    if found is None:
        log_warning(f"Failed to find object '{name}'")
    return found


def load_asset(name, type=None, follow_redirectors=True):
    """Finds an asset by its path, and loads it if need be; one that is not there is a warning, and None."""
    return load_object(None, name, type)


def _complete_asset_path(name):
    short = name.rsplit("/", 1)[-1]
    return name if "." in short else f"{name}.{short}"


def load_class(outer, name, type=None):
    """Finds a class by its path: "/Script/Module.Class"."""
    found = load_object(outer, name, __getattr__("Class"))
    base = type or __getattr__("Object")
    if found is not None and not isinstance(get_default_object(found), base):
        log_warning(f"The class '{name}' is no '{base.__name__}'")
        return None
    return found


class _LogStream:
    """Stands in for sys.stdout and sys.stderr: what is written becomes lines of the log."""

    encoding = "utf-8"
    errors = "strict"
    closed = False

    def __init__(self, is_error):
        self._is_error = is_error

    def write(self, text):
        if not isinstance(text, str):
            raise TypeError(f"write() argument must be str, not {type(text).__name__}")
        return _write_log(self._is_error, text)

    def flush(self):
        pass

    def isatty(self):
        return False


def _begin_command():
    # Folders and modules may have been made since the last command.
    _importlib.invalidate_caches()


def _format_error(error):
    # A script that is stopped while it handles an earlier stop would show both.
    chain = not isinstance(error, ScriptTimeoutError)
    return "".join(_traceback.format_exception(error, chain=chain))


def _has_other_threads():
    return len(_sys._current_frames()) > 1 or _threading.active_count() > 1


def _limit_recursion(largest, set_limit):
    def setrecursionlimit(limit):
        """Sets the depth of calls; what is more than the editor's stack bears is refused."""
        if limit > largest:
            raise ValueError(f"the recursion limit inside the editor is at most {largest}")
        set_limit(limit)

    return setrecursionlimit


_sys.setrecursionlimit = _limit_recursion(5000, _sys.setrecursionlimit)
_sys.stdout = _LogStream(False)
_sys.stderr = _LogStream(True)
# The process's own is the editor's console: a script that reads finds the end of the input.
_sys.stdin = _sys.__stdin__ = open("/dev/null", encoding="utf-8")
