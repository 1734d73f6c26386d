verify {installations}/scripted
