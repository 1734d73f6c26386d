"""compare.py SCHEMA PROGRAM STREAM...: each line of the streams, and copies with one thing changed,
are wrong for the program exactly where they are for a validator of the schema."""
import copy
import json
import subprocess
import sys

import schema

VALUES = [None, 5, -1, 0, -0.0, 1.5, 2.0, 2, 1e30, 2**63, "x", "", True, False, [], {}, [5], ["x"],
          [{}], {"x": None}, "COMPLETE", "PASS", "INFO"]


def places(value, path=()):
    """The paths to all that is in the value."""
    members = value.items() if isinstance(value, dict) else enumerate(value)
    for key, member in list(members):
        yield path + (key,)
        if isinstance(member, (dict, list)):
            yield from places(member, path + (key,))


def at(value, path):
    for key in path:
        value = value[key]
    return value


def changed(line):
    """Copies of the line with one thing changed."""
    for path in places(line):
        for value in VALUES:
            other = copy.deepcopy(line)
            at(other, path[:-1])[path[-1]] = value
            yield other
        other = copy.deepcopy(line)
        del at(other, path[:-1])[path[-1]]
        yield other
        if isinstance(at(line, path), dict):
            other = copy.deepcopy(line)
            at(other, path)["another"] = {}
            yield other
    for kind in ("schemaVersion", "testRunArtifact", "testStepArtifact", "another"):
        yield {**copy.deepcopy(line), kind: {}}


def found(program, lines):
    """The numbers of the lines that are wrong, and of those with no object where one should be."""
    text = "".join(json.dumps(line) + "\n" for line in lines)
    output = subprocess.run([program], input=text, capture_output=True, text=True, check=True).stdout
    rows = [row.split() for row in output.splitlines()]
    return {int(row[0]) for row in rows if len(row) == 1}, {int(row[0]) for row in rows if row[1:]}


def main():
    validator = schema.validator(sys.argv[1])
    lines = []
    for path in sys.argv[3:]:
        good = [json.loads(line) for line in open(path, encoding="utf-8")]
        lines += good + [other for line in good for other in changed(line)]
    lines += [5, None, [], {}, "x"]
    ours, noObject = found(sys.argv[2], lines)
    theirs = {number for number, line in enumerate(lines, 1) if not validator.is_valid(line)}
    for number in sorted(ours ^ theirs)[:10]:
        print("only ours:" if number in ours else "only theirs:", json.dumps(lines[number - 1])[:500])
    print(f"{len(lines)} lines, {len(theirs)} of them wrong, {len(noObject)} without an object")
    if ours != theirs or len(theirs) < 1000 or not noObject:
        sys.exit("the two differ")


main()
