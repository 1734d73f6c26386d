list one two three
