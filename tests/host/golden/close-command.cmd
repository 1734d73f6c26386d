lsit
