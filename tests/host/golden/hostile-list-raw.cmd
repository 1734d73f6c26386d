list --raw --root {installations}/hostile
