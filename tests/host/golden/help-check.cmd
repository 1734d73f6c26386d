check --help
