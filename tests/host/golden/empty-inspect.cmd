inspect TEST_Device --root {installations}/empty
