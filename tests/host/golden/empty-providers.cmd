providers --root {installations}/empty
