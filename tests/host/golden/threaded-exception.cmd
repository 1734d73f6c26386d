run --threaded 0 "Scripted Once" --root {installations}/scripted
