recover --help
