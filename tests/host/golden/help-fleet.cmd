fleet --help
