run --set Loops "Scripted Pass" --root {installations}/scripted
