run "Scripted Warning" --root {installations}/scripted
