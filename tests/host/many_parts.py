"""Makes a definition of very many small files: many_parts.py KIND COUNT FOLDER

KIND is tmdl (a file for each table), report (a semantic model of one table, and a report on it with a file for each
visual, 20 on a page) or project (a multidimensional project with a file for each dimension).
"""

import os
import sys

ENGINE = 'xmlns="http://schemas.microsoft.com/analysisservices/2003/engine"'


def write(folder, name, text):
    path = os.path.join(folder, name)
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)


def write_model(folder, tables):
    write(folder, "database.tmdl", "database Many\n\tcompatibilityLevel: 1601\n\n")
    names = "".join(f"ref table T{i}\n" for i in range(tables))
    write(folder, "model.tmdl", f"model Model\n\n{names}\n")
    for i in range(tables):
        write(folder, f"tables/T{i}.tmdl", f"table T{i}\n\n\tmeasure M{i} = SUM ( T{i}[a] )\n\n"
              "\tcolumn a\n\t\tdataType: int64\n\t\tsourceColumn: a\n\n"
              f"\tpartition T{i} = m\n\t\tsource = Sql.Database(\"s\", \"d\"){{[Schema=\"dbo\",Item=\"T{i}\"]}}[Data]\n\n")


def make_tmdl(folder, count):
    write_model(os.path.join(folder, "Many.SemanticModel/definition"), count)


def make_report(folder, count):
    write_model(os.path.join(folder, "Many.SemanticModel/definition"), 1)
    report = os.path.join(folder, "Many.Report")
    write(report, "definition.pbir", '{"datasetReference": {"byPath": {"path": "../Many.SemanticModel"}}}')
    write(report, "definition/report.json", "{}")
    field = '{"Measure": {"Expression": {"SourceRef": {"Entity": "T0"}}, "Property": "M0"}}'
    for i in range(count):
        page = f"definition/pages/p{i // 20}"
        if i % 20 == 0:
            write(report, f"{page}/page.json", f'{{"name": "p{i // 20}"}}')
        write(report, f"{page}/visuals/v{i}/visual.json",
              f'{{"name": "v{i}", "visual": {{"visualType": "card", "query": {{"field": {field}}}}}}}')


def make_project(folder, count):
    names = [f"d{i}.dim" for i in range(count)]
    for i, name in enumerate(names):
        write(folder, name, f"<Dimension {ENGINE}><ID>d{i}</ID><Name>D{i}</Name><Attributes><Attribute><ID>k</ID>"
              "<Name>Key</Name></Attribute></Attributes></Dimension>")
    write(folder, "Many.database", f"<Database {ENGINE}><ID>m</ID><Name>Many</Name></Database>")
    items = "".join(f"<ProjectItem><FullPath>{name}</FullPath></ProjectItem>" for name in names)
    write(folder, "Many.dwproj", "<Project xmlns:dwd=\"http://schemas.microsoft.com/DataWarehouse/Designer/1.0\">"
          f"<Database><FullPath>Many.database</FullPath></Database><Dimensions>{items}</Dimensions></Project>")


if __name__ == "__main__":
    {"tmdl": make_tmdl, "report": make_report, "project": make_project}[sys.argv[1]](sys.argv[3], int(sys.argv[2]))
