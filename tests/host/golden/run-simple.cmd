run --level simple "Scripted Pass" --root {installations}/scripted
