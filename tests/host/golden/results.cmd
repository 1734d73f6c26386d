results "Scripted Fail" --root {installations}/scripted
