run --threaded soon "Scripted Pass" --root {installations}/scripted
