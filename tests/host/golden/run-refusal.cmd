run "Scripted Refusal" --root {installations}/scripted
