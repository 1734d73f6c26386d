run --events - --jsonl - "Scripted Pass" --root {installations}/scripted --no-history
