run "Scripted Abort" --root {installations}/scripted
