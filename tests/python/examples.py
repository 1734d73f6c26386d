"""examples.py SOURCE: runs the examples of the installed package, and those of its README and guide."""

import doctest
import sys
from pathlib import Path

from diagsrunner import diagnostics, events

FLAGS = doctest.ELLIPSIS | doctest.NORMALIZE_WHITESPACE


def main() -> int:
    source = Path(sys.argv[1])
    assert source not in Path(diagnostics.__file__).parents, "the sources are tried, not the wheel"
    results = [doctest.testmod(module, optionflags=FLAGS) for module in (diagnostics, events)]
    for document in (source / "README.md", source.parent / "docs/python.md"):
        results.append(doctest.testfile(str(document), module_relative=False, optionflags=FLAGS))
    tried = sum(each.attempted for each in results)
    print(f"{tried} examples")
    return 1 if any(each.failed or not each.attempted for each in results) else 0


sys.exit(main())
