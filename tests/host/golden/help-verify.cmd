verify --help
