run "Scripted Pass" --ignore-providers --root {installations}/scripted
