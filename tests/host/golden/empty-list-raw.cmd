list --raw --root {installations}/empty
