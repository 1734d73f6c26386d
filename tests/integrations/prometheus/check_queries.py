"""check_queries.py ALERTS DASHBOARD METRICS...: what the alert rules and the dashboard ask for are
metrics, and labels of these, that stand in one of the files of metrics at least."""
import json
import re
import sys

METRIC = re.compile(r"\bdiags_[a-z_]+")
SELECTION = re.compile(r"\b(diags_[a-z_]+)\{([^}]*)\}")
LABEL = re.compile(r'([a-z_]+)\s*(?:=~|!~|!=|=)\s*"')
SERIES = re.compile(r"^(diags_[a-z_]+)(?:\{(.*)\})? \S+$", re.M)
SERIES_LABEL = re.compile(r'([a-z_]+)="(?:[^"\\]|\\.)*"')
# What Prometheus itself adds to each series.
ADDED = {"instance", "job"}


def written_metrics(paths: list[str]) -> dict[str, set[str]]:
    metrics: dict[str, set[str]] = {}
    for path in paths:
        with open(path, encoding="utf-8") as file:
            for name, labels in SERIES.findall(file.read()):
                metrics.setdefault(name, set()).update(SERIES_LABEL.findall(labels))
    return metrics


def dashboard_queries(path: str) -> list[str]:
    with open(path, encoding="utf-8") as file:
        dashboard = json.load(file)
    panels = dashboard["panels"]
    if len({panel["id"] for panel in panels}) != len(panels):
        sys.exit(f"{path}: two panels have one id")
    queries = [target["expr"] for panel in panels for target in panel["targets"]]
    variables = [each for each in dashboard["templating"]["list"] if each["type"] == "query"]
    return queries + [each["query"]["query"] for each in variables]


def alert_queries(path: str) -> list[str]:
    """The whole text without what is for people: the rules' syntax is checked elsewhere."""
    with open(path, encoding="utf-8") as file:
        text = file.read()
    return [re.sub(r"^\s*(#|summary:|description:).*$", "", text, flags=re.M)]


def complaints(path: str, queries: list[str], metrics: dict[str, set[str]]) -> list[str]:
    found = []
    for query in queries:
        found += [f"{path}: nothing writes {name}" for name in METRIC.findall(query)
                  if name not in metrics]
        for name, labels in SELECTION.findall(query):
            unknown = set(LABEL.findall(labels)) - metrics.get(name, set()) - ADDED
            found += [f"{path}: {name} has no label {label}" for label in sorted(unknown)]
    if not any(METRIC.search(query) for query in queries):
        found.append(f"{path}: asks for nothing")
    return found


def main() -> None:
    alerts, dashboard, *files = sys.argv[1:]
    metrics = written_metrics(files)
    found = complaints(alerts, alert_queries(alerts), metrics)
    found += complaints(dashboard, dashboard_queries(dashboard), metrics)
    if found:
        sys.exit("\n".join(found))


main()
