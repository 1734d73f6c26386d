run --all --exclude "Scriptd Pass" --root {installations}/scripted
