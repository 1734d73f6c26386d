run --quiet "Scripted Pass" "Scripted Fail" --root {installations}/scripted --no-history
