check --json --root {installations}/scripted
