run --all --exclude "*" --root {installations}/scripted --no-history
