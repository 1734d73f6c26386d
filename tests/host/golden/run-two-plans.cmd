run --plan quick --plan standard --root {installations}/scripted
