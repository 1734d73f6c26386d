frobnicate --all
