inspect --help
