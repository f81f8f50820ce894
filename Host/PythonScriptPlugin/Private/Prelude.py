# The part of the module "unreal" that is easier to say in Python. It runs once, inside the module, before any script.

import importlib as _importlib
import sys as _sys
import threading as _threading
import traceback as _traceback


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
