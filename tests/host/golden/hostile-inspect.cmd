inspect TEST_Device --root {installations}/hostile
