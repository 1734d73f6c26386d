check --json --root {installations}/hostile
