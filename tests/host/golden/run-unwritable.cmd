run --events {installations}/nowhere/e.json "Scripted Pass" --root {installations}/scripted --no-history
