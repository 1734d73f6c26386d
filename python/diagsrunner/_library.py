"""The C interface as it is: its functions, structures and texts, by ctypes."""

from __future__ import annotations

import ctypes
import os
import sys
import threading
from ctypes import POINTER, byref, c_char_p, c_double, c_int, c_size_t, c_uint64, c_void_p
from pathlib import Path
from typing import Any, Callable, Dict, List, Optional, Tuple, Union

from ._place import find_library
from .errors import ArgumentError, LibraryError, error_of

OLDEST_INTERFACE = 5
OK, TIMEOUT, END = 0, 6, 7
StrPath = Union[str, "os.PathLike[str]"]


class Options(ctypes.Structure):
    """diags_options"""

    _fields_ = [
        ("size", c_size_t),
        ("root", c_char_p),
        ("worker", c_char_p),
        ("log_file", c_char_p),
        ("log_level", c_int),
        ("bios_id", c_char_p),
        ("no_schema_cache", c_int),
        ("list_seconds", c_double),
    ]


class ResultFields(ctypes.Structure):
    """diags_result"""

    _fields_ = [
        ("size", c_size_t),
        ("passed", c_uint64),
        ("warned", c_uint64),
        ("failed", c_uint64),
        ("aborted", c_uint64),
        ("incomplete", c_uint64),
        ("broken", c_uint64),
        ("skipped", c_uint64),
        ("was_cancelled", c_int),
        ("time_was_up", c_int),
    ]


_OBJECT, _OUT = c_void_p, POINTER(c_void_p)
# Name; what it gives; what it takes.
_FUNCTIONS: Tuple[Tuple[str, Any, List[Any]], ...] = (
    ("version", c_char_p, []),
    ("code_text", c_char_p, [c_int]),
    ("last_error", c_char_p, []),
    ("free", None, [c_void_p]),
    ("open", c_int, [POINTER(Options), _OUT]),
    ("close", None, [_OBJECT]),
    ("list", c_int, [_OBJECT, _OUT]),
    ("providers", c_int, [_OBJECT, _OUT]),
    ("check", c_int, [_OBJECT, _OUT]),
    ("interrupt", c_int, [_OBJECT]),
    ("plan_named", c_int, [_OBJECT, c_char_p, _OUT]),
    ("plan_text", c_int, [_OBJECT, c_char_p, c_size_t, _OUT]),
    ("plan_tests", c_int, [_OBJECT, POINTER(c_char_p), c_size_t, _OUT]),
    ("plan_preview", c_int, [_OBJECT, _OUT]),
    ("plan_list", c_int, [_OBJECT, _OUT]),
    ("plan_without", c_int, [_OBJECT, POINTER(c_char_p), c_size_t, _OUT]),
    ("plan_close", None, [_OBJECT]),
    ("run_start", c_int, [_OBJECT, _OBJECT, c_void_p, c_void_p, _OUT]),
    ("run_next_many", c_int, [_OBJECT, c_int, _OUT, POINTER(c_size_t)]),
    ("run_cancel", c_int, [_OBJECT]),
    ("run_wait", c_int, [_OBJECT, c_int, POINTER(ResultFields)]),
    ("run_close", c_int, [_OBJECT]),
)


class Library:
    """One loaded library. Every method may be called from any thread; a call lets others go on."""

    def __init__(self, path: Path) -> None:
        self.path = path
        self._functions: Dict[str, Callable[..., Any]] = {}
        library = _loaded(path)
        self._refuse_old(library)
        for name, gives, takes in _FUNCTIONS:
            function = getattr(library, "diags_" + name)
            function.restype, function.argtypes = gives, takes
            self._functions[name] = function
        self.free = self._functions["free"]

    def _refuse_old(self, library: ctypes.CDLL) -> None:
        try:
            number = library.diags_interface
        except AttributeError as error:
            raise LibraryError(f"{self.path} is another library") from error
        number.restype, number.argtypes = ctypes.c_uint, []
        self.interface = int(number())
        if self.interface < OLDEST_INTERFACE:
            raise LibraryError(f"{self.path} is too old: its interface is {self.interface}, and "
                               f"{OLDEST_INTERFACE} is needed")

    @property
    def version(self) -> str:
        return text_of(self._functions["version"]())

    def function(self, name: str) -> Callable[..., Any]:
        return self._functions[name]

    def call(self, name: str, *arguments: Any) -> int:
        """The code, if it is one of those that say how far something is. Raises the others."""
        code = int(self._functions[name](*arguments))
        if code in (OK, TIMEOUT, END):
            return code
        text = text_of(self._functions["last_error"]())
        raise error_of(code, text or text_of(self._functions["code_text"](code)))

    def text(self, name: str, *arguments: Any) -> str:
        """What the function hands out by its last argument."""
        out = c_void_p()
        self.call(name, *arguments, byref(out))
        try:
            return text_of(ctypes.string_at(out)) if out.value else ""
        finally:
            self.free(out)

    def bytes_of_events(self, run: c_void_p, milliseconds: int) -> Optional[bytes]:
        """Lines that wait; none where nothing came in that time; nothing at the end."""
        out, length = c_void_p(), c_size_t()
        code = self.call("run_next_many", run, milliseconds, byref(out), byref(length))
        if code != OK:
            return None if code == END else b""
        try:
            return ctypes.string_at(out, length.value)
        finally:
            self.free(out)


def _loaded(path: Path) -> ctypes.CDLL:
    try:
        if sys.platform == "win32":
            # What it needs: from its own folder and the system's, never from PATH or the working one.
            return ctypes.CDLL(str(path), winmode=0x00000100 | 0x00000800)
        return ctypes.CDLL(str(path))
    except OSError as error:
        raise LibraryError(f"the library cannot be loaded: {error}") from error


_loaded_libraries: Dict[Path, Library] = {}
_loading = threading.Lock()


def library_at(named: Optional[StrPath] = None) -> Library:
    """Loads each library once. `named` is a whole path, for which the caller answers."""
    path = find_library() if named is None else Path(named)
    if not path.is_absolute():
        raise LibraryError(f"the library has to be given as a whole path, not as {ascii(str(path))}")
    with _loading:
        if path not in _loaded_libraries:
            _loaded_libraries[path] = Library(path)
        return _loaded_libraries[path]


def text_of(given: Optional[bytes]) -> str:
    return (given or b"").decode("utf-8", "replace")


def bytes_of(text: str, name: str) -> bytes:
    """For a `const char *`. A zero byte would end it early, and a text is no number."""
    if not isinstance(text, str):
        raise TypeError(f"{name} has to be a str, not {type(text).__name__}")
    if "\0" in text:
        raise ArgumentError(f"{name} has a zero byte in it")
    try:
        return text.encode("utf-8")
    except UnicodeEncodeError as error:
        raise ArgumentError(f"{name} has no UTF-8: {error}") from error


def bytes_of_path(path: StrPath, name: str) -> bytes:
    """A path may have bytes on POSIX that are no text."""
    text = os.fspath(path)
    if isinstance(text, str) and "\0" not in text and sys.platform != "win32":
        return os.fsencode(text)
    return bytes_of(text, name)
