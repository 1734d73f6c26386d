run "Scripted Incomplete" --root {installations}/scripted
