run --all --ignore-providers --root {installations}/faulty
