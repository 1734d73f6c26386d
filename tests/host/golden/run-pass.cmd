run "Scripted Pass" --root {installations}/scripted
