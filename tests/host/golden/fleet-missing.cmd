fleet {installations}/nothing
