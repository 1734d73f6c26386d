run "Scripted T*" --root {installations}/scripted --no-history
