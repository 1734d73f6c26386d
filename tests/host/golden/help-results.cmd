results --help
