providers --help
