run --level extended "Scripted Pass" --root {installations}/scripted
