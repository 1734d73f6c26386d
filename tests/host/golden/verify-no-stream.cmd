verify {installations}/empty/schema/empty.mof
