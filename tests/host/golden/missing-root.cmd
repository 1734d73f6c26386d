list --root {installations}/missing
