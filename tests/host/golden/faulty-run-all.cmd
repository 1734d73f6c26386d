run --all --root {installations}/faulty
