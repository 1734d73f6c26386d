"""check_pages.py PAGES HERE [--write]: looks at the sample pages of fleets in a browser."""
import base64, hashlib, re, sys
PAGES = sys.argv[1]
