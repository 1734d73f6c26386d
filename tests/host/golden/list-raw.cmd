list --raw --root {installations}/scripted
