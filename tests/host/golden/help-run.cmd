run --help
