report --help
