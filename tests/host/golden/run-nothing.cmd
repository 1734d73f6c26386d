run --root {installations}/scripted
