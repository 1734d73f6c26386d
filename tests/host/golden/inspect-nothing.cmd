inspect TEST_Empty --root {installations}/hostile
