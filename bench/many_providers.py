#!/usr/bin/env python3
"""Adds 200 provider libraries with classes of their own to an installation.

usage: many_providers.py LIBRARY PROVIDERS-FOLDER
"""

import pathlib
import shutil
import sys

COUNT = 200


def main():
    library, folder = map(pathlib.Path, sys.argv[1:])
    for number in range(COUNT):
        name = f"many{number}"
        shutil.copy(library, folder / f"lib{name}.so")
        (folder / f"{name}.mof").write_text(
            f"class MANY_Record{number} {{ [Key] string Name; }};\n"
        )
        (folder / f"{name}.registration").write_text(
            f"MANY_Record{number} root/cimv2 Many_Records{number} {name} instance\n"
        )


main()
