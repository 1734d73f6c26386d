run "Scripted Pass" "Scriptd Fail" --root {installations}/scripted
