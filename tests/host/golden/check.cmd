check --root {installations}/scripted
