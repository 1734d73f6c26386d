run --until-failure "Scripted Fail" --root {installations}/scripted --no-history
