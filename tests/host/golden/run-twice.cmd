run --level extended "Scripted Pass" "Scripted Pass" --root {installations}/scripted
