inspect TEST_Mute --root {installations}/scripted
