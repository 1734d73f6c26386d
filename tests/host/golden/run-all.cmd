run --all --root {installations}/scripted
