providers --root {installations}/faulty
