check --root {installations}/broken
