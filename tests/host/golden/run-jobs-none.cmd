run --jobs 0 --all --root {installations}/scripted
