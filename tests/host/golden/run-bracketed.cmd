run "[Scripted Pass],fan0,[Front Fan]" --root {installations}/scripted
