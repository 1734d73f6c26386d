inspect TEST_Devise --root {installations}/scripted
