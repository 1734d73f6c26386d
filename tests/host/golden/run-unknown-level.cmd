run "Scripted Pass" --level loud --root {installations}/scripted
