results "Scripted Refusal" --root {installations}/scripted
