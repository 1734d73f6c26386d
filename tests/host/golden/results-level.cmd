results --level extended "Scripted Pass" --root {installations}/scripted
