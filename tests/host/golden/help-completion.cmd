completion --help
