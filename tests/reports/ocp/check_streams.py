"""check_streams.py FOLDER FILE...: each line of each stream follows the schema in the folder."""
import json
import re
import sys

import schema


def main():
    validator = schema.validator(sys.argv[1])
    for path in sys.argv[2:]:
        data = open(path, "rb").read()
        if not data.endswith(b"\n"):
            sys.exit(f"{path} does not end with a line")
        lines = data.decode("utf-8").split("\n")[:-1]
        for number, line in enumerate(lines):
            where = f"{path}, line {number + 1}"
            if re.search("[\x00-\x1f\x7f-\x9f]", line):
                sys.exit(f"{where}: a control character")
            value = json.loads(line)
            if value["sequenceNumber"] != number:
                sys.exit(f"{where}: sequence number {value['sequenceNumber']}")
            fault = next(validator.iter_errors(value), None)
            if fault:
                sys.exit(f"{where}: {fault.message[:500]}")
        print(f"{path}: {len(lines)} lines")
    if validator.is_valid({"sequenceNumber": 0, "timestamp": ""}):
        sys.exit("the schema takes anything")


main()
