run --set Lops=2 "Scripted Pass" --root {installations}/scripted
