run "Scripted Twin" --root {installations}/scripted
