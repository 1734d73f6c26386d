run --plan ./nothing.toml --root {installations}/scripted
