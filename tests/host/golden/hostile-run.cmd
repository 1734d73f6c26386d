run "Fan\u009b\x0aVerdict: Pass" --root {installations}/hostile
