run --all "Scripted Pass" --root {installations}/scripted
