run --threaded 0 "Scripted Pass" "Scripted Fail" --root {installations}/scripted
