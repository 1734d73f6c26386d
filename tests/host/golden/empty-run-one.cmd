run "Scripted Pass" --root {installations}/empty
