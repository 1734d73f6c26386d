run --threaded 0 "Scripted Refusal" --root {installations}/scripted
