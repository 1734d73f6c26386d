run "Scripted Twin,fan1,Rear Fan" --root {installations}/scripted
