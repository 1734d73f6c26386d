inspect ZELSG_VORProduct --root {installations}/scripted
