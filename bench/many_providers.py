#!/usr/bin/env python3
"""Adds COUNT provider libraries (200) with classes of their own to an installation.

usage: many_providers.py LIBRARY PROVIDERS-FOLDER [COUNT]
"""

import pathlib
import shutil
import sys

COUNT = 200


def main():
    library, folder = map(pathlib.Path, sys.argv[1:3])
    count = int(sys.argv[3]) if len(sys.argv) > 3 else COUNT
    for number in range(count):
        name = f"many{number}"
        shutil.copy(library, folder / f"lib{name}.so")
        (folder / f"{name}.mof").write_text(
            f"class MANY_Record{number} {{ [Key] string Name; }};\n"
        )
        (folder / f"{name}.registration").write_text(
            f"MANY_Record{number} root/cimv2 Many_Records{number} {name} instance\n"
        )


main()
