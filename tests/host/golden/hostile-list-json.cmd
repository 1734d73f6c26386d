list --json --root {installations}/hostile
