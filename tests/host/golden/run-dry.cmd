run --dry-run --jobs 2 --all --root {installations}/scripted
