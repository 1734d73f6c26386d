providers --root {installations}/broken
