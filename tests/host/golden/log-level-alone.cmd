list --log-level 2
