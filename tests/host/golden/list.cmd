list --root {installations}/scripted
