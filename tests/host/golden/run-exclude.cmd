run --all --exclude "Scripted [!P]*" --root {installations}/scripted --no-history
