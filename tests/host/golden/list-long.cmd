list --long --root {installations}/scripted
