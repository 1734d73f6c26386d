history --help
