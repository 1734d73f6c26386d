run --timeout soon "Scripted Pass" --root {installations}/scripted
