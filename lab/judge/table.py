"""The table of docs/lab.md: fault kind x test, from the results."""

import collections

from lab.judge import result


def marks(part=""):
    """Between which two lines of a document a table stands; a document may have several, each with its name."""
    command = "./dev lab" + (f" --part {part}" if part else "")
    return tuple(f"<!-- written by {command}: {side} here -->" for side in ("from", "to"))


_HEAD = ("Fault", "Test", "Caused", "Found", "Rightly placed", "Ended the test", "Missed", "No verdict",
         "No effect", "Out of reach", "Machine fell")
_HEALTHY_HEAD = ("Test", "Healthy machines", "Silent", "False alarms", "No verdict", "Machine fell")


def _row(cells):
    return "| " + " | ".join(str(cell) for cell in cells) + " |"


def _table(head, rows):
    return [_row(head), "|" + "---|" * len(head)] + [_row(row) for row in rows]


def _grouped(results, key):
    groups = collections.OrderedDict()
    for one in results:
        groups.setdefault(key(one), []).append(one)
    return groups


def _count(group, came_to):
    return sum(one.came_to == came_to for one in group)


def _is_product(one):
    return one.test.startswith("DIAGS: ")


def faulty(results):
    rows = []
    groups = _grouped([one for one in results if not result.is_healthy(one.fault)],
                      lambda one: (one.fault, one.test))
    for (fault, test), group in sorted(groups.items()):
        placed = sum(one.placed for one in group if one.came_to == result.FOUND)
        rows.append((fault, test, len(group), _count(group, result.FOUND), placed,
                     _count(group, result.ENDED), _count(group, result.MISSED),
                     _count(group, result.NO_VERDICT), _count(group, result.NO_EFFECT),
                     _count(group, result.OUT_OF_REACH), _count(group, result.FELL)))
    return _table(_HEAD, rows)


def healthy(results):
    rows = []
    groups = _grouped([one for one in results if result.is_healthy(one.fault)], lambda one: one.test)
    for test, group in sorted(groups.items()):
        rows.append((test, len(group), _count(group, result.SILENT), _count(group, result.FALSE_ALARM),
                     _count(group, result.NO_VERDICT), _count(group, result.FELL)))
    return _table(_HEALTHY_HEAD, rows)


def _share(group):
    return f"{_count(group, result.FOUND)} of {len(group)}" if group else "-"


def side_by_side(results):
    """What the product's tests find of the faults that the public exercisers were given too, and what those find:
    nothing where there were none."""
    others = [one for one in results if not _is_product(one)]
    names = sorted({one.test for one in others})
    rows = []
    for fault in sorted({one.fault for one in others if not result.is_healthy(one.fault)}):
        same = [one for one in results if one.fault == fault]
        rows.append((fault, _share([one for one in same if _is_product(one)]),
                     *(_share([one for one in same if one.test == name]) for name in names)))
    if not rows:
        return []
    return [""] + _table(("Fault", "Found by the product's tests for it", *(f"Found by {name}" for name in names)), rows)


def text(results):
    product = [one for one in results if _is_product(one)]
    return "\n".join(faulty(product) + [""] + healthy(product) + side_by_side(results)) + "\n"


def put_into(document, results, part=""):
    """The document with the table between the two marks of that part."""
    begin_mark, end_mark = marks(part)
    head, begin, rest = document.partition(begin_mark)
    _, end, tail = rest.partition(end_mark)
    if not begin or not end:
        raise ValueError("the document has no place for the table")
    return f"{head}{begin_mark}\n\n{text(results)}\n{end_mark}{tail}"
