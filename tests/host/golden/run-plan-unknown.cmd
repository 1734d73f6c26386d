run --plan quik --root {installations}/scripted
