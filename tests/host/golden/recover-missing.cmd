recover {installations}/nothing.jsonl
