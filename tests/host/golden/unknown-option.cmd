list --frobnicate
