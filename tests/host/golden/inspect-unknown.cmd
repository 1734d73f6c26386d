inspect TEST_Nothing --root {installations}/scripted
