run --threaded 0 "Scripted Pass" --root {installations}/scripted
