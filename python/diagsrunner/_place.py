"""Where the library is: only where an administrator, or whoever installed this package, put it.

Whoever can say which library is loaded runs code of his own in this process. So nothing is taken
from the working directory, from LD_LIBRARY_PATH, PATH or the like, and DIAGS_LIBRARY only where
nobody but root and the user of this process could have written it.
"""

from __future__ import annotations

import os
import stat
import sys
from pathlib import Path
from typing import Iterator, List, Mapping, Optional

from .errors import LibraryError

_NAME = "diags.dll" if sys.platform == "win32" else "libdiags.so.1"


def find_library(environment: Optional[Mapping[str, str]] = None) -> Path:
    """The library's file. Raises `LibraryError`, which names all places."""
    named = (os.environ if environment is None else environment).get("DIAGS_LIBRARY")
    if named:
        return named_library(named)
    places = list(_places(Path(__file__).resolve().parent))
    for place in places:
        if place.is_file():
            return place
    raise LibraryError("the library is missing; looked for " + ", ".join(map(str, places)))


def _places(package: Path) -> Iterator[Path]:
    """In a wheel that has it; beside the folder of packages, as Debian's has it; the system's."""
    yield package / "native" / _NAME
    for above in package.parents[1:3]:
        yield above / "diagsrunner" / _NAME
    yield from (folder / _NAME for folder in _system_folders())


def _system_folders() -> List[Path]:
    if sys.platform != "win32":
        return [Path("/usr/lib/diagsrunner"), Path("/usr/local/lib/diagsrunner")]
    # Of the registry, which administrators alone write; the variable is anybody's.
    import winreg

    key = r"SOFTWARE\Microsoft\Windows\CurrentVersion"
    with winreg.OpenKey(winreg.HKEY_LOCAL_MACHINE, key) as opened:
        return [Path(winreg.QueryValueEx(opened, "ProgramFilesDir")[0]) / "diagsrunner"]


def named_library(named: str) -> Path:
    """What DIAGS_LIBRARY names. Raises `LibraryError` unless nobody else can have written it."""
    if sys.platform == "win32":
        raise LibraryError("DIAGS_LIBRARY is not obeyed on Windows: give the library as an argument")
    if os.geteuid() != os.getuid() or os.getegid() != os.getgid():
        raise LibraryError("DIAGS_LIBRARY is not obeyed in a process with another's rights")
    if not os.path.isabs(named):
        raise LibraryError(f"DIAGS_LIBRARY is no whole path: {ascii(named)}")
    try:
        library = Path(named).resolve(strict=True)
        for path in (library, *library.parents):
            _refuse_what_others_write(path, os.geteuid())
    except (OSError, RuntimeError) as error:
        raise LibraryError(f"DIAGS_LIBRARY: {ascii(named)}: {error}") from error
    return library


def _refuse_what_others_write(path: Path, user: int) -> None:
    what = path.lstat()
    # In a sticky folder, such as /tmp, nobody replaces what is another's.
    kept_apart = stat.S_ISDIR(what.st_mode) and bool(what.st_mode & stat.S_ISVTX)
    if what.st_mode & (stat.S_IWGRP | stat.S_IWOTH) and not kept_apart:
        raise LibraryError(f"DIAGS_LIBRARY: others can write {ascii(str(path))}")
    if what.st_uid not in (0, user):
        raise LibraryError(f"DIAGS_LIBRARY: {ascii(str(path))} is another user's")
