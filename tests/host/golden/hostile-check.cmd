check --root {installations}/hostile
