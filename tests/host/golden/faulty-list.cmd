list --root {installations}/faulty
