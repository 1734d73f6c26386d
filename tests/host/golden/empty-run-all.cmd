run --all --root {installations}/empty
