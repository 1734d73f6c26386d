inspect TEST_Device --root {installations}/scripted
