list --help
