list --json --root {installations}/empty
