list --root {installations}/empty
