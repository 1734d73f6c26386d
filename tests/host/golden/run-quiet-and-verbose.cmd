run --quiet --verbose "Scripted Pass" --root {installations}/scripted
