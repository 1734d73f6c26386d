verify {installations}/nothing.jsonl
