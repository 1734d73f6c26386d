"""check_schema.py SCHEMA: each line of standard input follows the schema; lines made wrong do not."""
import copy
import json
import sys

import jsonschema


def spoilt(event):
    """Copies of the event, each with one thing wrong."""
    for member in ("sequence", "time", "source"):
        without = copy.deepcopy(event)
        del without[member]
        yield "without " + member, without
    kind = next(k for k in event if k not in ("sequence", "time", "source", "testId"))
    without = copy.deepcopy(event)
    del without[kind]
    yield "without its kind", without
    twice = copy.deepcopy(event)
    twice["step" if kind != "step" else "progress"] = {"name": "x", "percent": 1}
    yield "of two kinds", twice
    empty = copy.deepcopy(event)
    empty[kind] = {}
    yield "with an empty " + kind, empty
    for member, value in (("sequence", -1), ("time", "today"), ("source", "me"), ("testId", 0)):
        wrong = copy.deepcopy(event)
        wrong[member] = value
        yield f"with {member} {value}", wrong


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        schema = json.load(file)
    jsonschema.Draft202012Validator.check_schema(schema)
    validator = jsonschema.Draft202012Validator(schema)
    lines = [json.loads(line) for line in sys.stdin]
    if len(lines) < 11:
        sys.exit("there are too few lines")
    for event in lines:
        validator.validate(event)
        for what, wrong in spoilt(event):
            if validator.is_valid(wrong):
                sys.exit(f"an event {what} passes: {wrong}")
    print(f"{len(lines)} lines follow the schema")


main()
