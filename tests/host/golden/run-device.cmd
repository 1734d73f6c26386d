run fan1 --root {installations}/scripted --no-history
