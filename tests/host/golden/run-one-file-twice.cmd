run --events {installations}/twice --jsonl {installations}/./twice "Scripted Pass" --root {installations}/scripted --no-history
