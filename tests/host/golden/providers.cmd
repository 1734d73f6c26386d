providers --root {installations}/scripted
