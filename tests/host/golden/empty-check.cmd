check --root {installations}/empty
