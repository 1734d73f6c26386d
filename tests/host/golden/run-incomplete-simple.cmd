run --level simple "Scripted Incomplete" --root {installations}/scripted
