history --diff last
