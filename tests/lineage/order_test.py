"""order_test.py PROGRAM DEFINITION...: the order of independent parts of a definition changes nothing of its graph.

Each definition is read as it is and with the members of its collections in other orders; nodes, edges, settings and open
names must be the same, but for what tells their order.
"""

import collections
import csv
import json
import pathlib
import random
import re
import subprocess
import sys
import tempfile
from xml.dom import minidom

ORDERS = 2
# Collections whose members stand for themselves. Where a name or ID is there twice, the first one is meant.
TABULAR = {"tables", "columns", "measures", "relationships", "roles", "expressions", "dataSources", "perspectives"}
XMLA = {"Dimensions", "Cubes", "DataSources", "DataSourceViews", "Attributes", "MeasureGroups", "Measures", "Roles",
        "Partitions", "Perspectives", "Kpis", "Hierarchies"}

# What tells the order of such members as it is written.
LISTS = {"Aggregation"}
LINE_ENDS = (("&#10;", "\ue010"), ("&#xA;", "\ue011"), ("&#13;", "\ue012"), ("&#xD;", "\ue013"), ("&#9;", "\ue014"))


def shuffle_json(value, chance):
    if isinstance(value, dict):
        for key, inner in value.items():
            if key in TABULAR and isinstance(inner, list):
                chance.shuffle(inner)
            shuffle_json(inner, chance)
    elif isinstance(value, list):
        for inner in value:
            shuffle_json(inner, chance)


def shuffled_json(text, chance):
    definition = json.loads(re.sub(r"^\s*//.*$", "", text, flags=re.M))
    shuffle_json(definition, chance)
    return json.dumps(definition)


def shuffled_xml(text, chance):
    # The library writes line ends of attributes as they are, which makes blanks of them.
    for reference, mark in LINE_ENDS:
        text = text.replace(reference, mark)
    document = minidom.parseString(text.encode())
    for element in document.getElementsByTagName("*"):
        if element.localName not in XMLA or element.parentNode.localName in LISTS:
            continue
        members = [node for node in element.childNodes if node.nodeType == node.ELEMENT_NODE]
        for member in members:
            element.removeChild(member)
        chance.shuffle(members)
        for member in members:
            element.appendChild(member)
    text = document.documentElement.toxml()
    for reference, mark in LINE_ENDS:
        text = text.replace(mark, reference)
    return text


def shuffled(path, chance):
    text = path.read_text(encoding="utf-8-sig")
    return shuffled_xml(text, chance) if text.lstrip().startswith("<") else shuffled_json(text, chance)


def rows(path):
    with open(path, encoding="utf-8", newline="") as file:
        return list(csv.DictReader(file))


def graph_of(program, definition, folder):
    out = pathlib.Path(folder) / "out"
    subprocess.run([program, "export", definition, "--format", "csv", "-o", out, "--quiet"], check=True)
    return out


# How rows are numbered, and where the definition lies.
NUMBERS = {"source", "model", "id", "owner", "cube", "from", "to", "node"}


def graph_rows(out):
    found = collections.Counter()
    for table in ("nodes", "edges", "settings", "open_names"):
        for row in rows(f"{out}.{table}.csv"):
            found[(table, *(f"{key}={value}" for key, value in row.items() if key not in NUMBERS))] += 1
    return found


def differences(program, path, chance):
    with tempfile.TemporaryDirectory() as folder:
        expected = graph_rows(graph_of(program, path, folder))
        other = pathlib.Path(folder) / path.name
        other.write_text(shuffled(path, chance), encoding="utf-8")
        actual = graph_rows(graph_of(program, other, folder))
    return [("lost", row) for row in expected - actual] + [("new", row) for row in actual - expected]


def main():
    program, *definitions = sys.argv[1:]
    failed = False
    for path in map(pathlib.Path, definitions):
        for order in range(ORDERS):
            found = differences(program, path, random.Random(order))
            failed |= bool(found)
            for what, row in found[:10]:
                print(f"{path.name}, order {order}: {what}: {' '.join(row)}")
    sys.exit(failed)


if __name__ == "__main__":
    main()
