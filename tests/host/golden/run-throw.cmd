run "Scripted Throw" --root {installations}/scripted
