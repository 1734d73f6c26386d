"""check_documents.py FILE...: each is a JUnit document as dashboards read it."""
import re
import sys
import xml.etree.ElementTree as ElementTree

COUNTED = {"failures": "failure", "errors": "error", "skipped": "skipped"}
VERDICTS = set(COUNTED.values())


def require(condition, what):
    if not condition:
        raise ValueError(what)


def check_case(case):
    require(case.get("name") and case.get("classname"), "a case without a name")
    require(re.fullmatch(r"\d+\.\d+", case.get("time")), "a time that is no number")
    kinds = [child.tag for child in case]
    verdicts = [kind for kind in kinds if kind in VERDICTS]
    require(len(verdicts) <= 1, "a case with two verdicts")
    order = ["system-out", "system-err"]
    rest = kinds[len(verdicts):]
    require(kinds[:len(verdicts)] == verdicts and rest == [k for k in order if k in rest],
            f"children in the order {kinds}")


def check_suite(suite):
    cases = suite.findall("testcase")
    require(int(suite.get("tests")) == len(cases), "a wrong count of tests")
    for attribute, kind in COUNTED.items():
        require(int(suite.get(attribute)) == len(suite.findall("testcase/" + kind)),
                "a wrong count of " + attribute)
    require(suite.get("name") and suite.get("hostname"), "a suite without a name")
    require(re.fullmatch(r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d", suite.get("timestamp")), "no timestamp")
    names = [(case.get("classname"), case.get("name")) for case in cases]
    require(len(names) == len(set(names)), "two cases of one name")
    for case in cases:
        check_case(case)
    tags = [child.tag for child in suite]
    require(tags == sorted(tags, key=["properties", "testcase", "system-out", "system-err"].index),
            "parts of the suite in the wrong order")
    return len(cases)


def main():
    for path in sys.argv[1:]:
        text = open(path, "rb").read().decode("utf-8")
        require(not re.search("[\x00-\x08\x0b-\x1f\x7f-\x9f\ufffe\uffff]", text), "a bad character")
        try:
            root = ElementTree.fromstring(text.encode("utf-8"))
            require(root.tag == "testsuites" and len(root) == 1, "no list of one suite")
            print(f"{path}: {check_suite(root[0])} cases")
        except (ValueError, ElementTree.ParseError) as fault:
            sys.exit(f"{path}: {fault}")


main()
