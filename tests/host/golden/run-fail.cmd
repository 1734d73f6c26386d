run "Scripted Fail" --root {installations}/scripted
