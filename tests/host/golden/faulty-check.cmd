check --root {installations}/faulty
