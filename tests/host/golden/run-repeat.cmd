run --repeat 2 --until-failure "Scripted Pass" --root {installations}/scripted --no-history
