list --root {installations}/hostile
