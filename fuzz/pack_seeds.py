"""pack_seeds.py ROOT FOLDER PROGRAM: the seeds that consist of several files of the repository at ROOT, in
FOLDER/seeds/TARGET/. PROGRAM is xmla-bridge, which makes the databases."""

import pathlib
import sqlite3
import subprocess
import sys
import tempfile
import zipfile

root, seeds, program = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2], "seeds"), sys.argv[3]
tests = root / "tests"
ESTATES = {
    "same-tables": ["lineage/orders.xmla", "lineage/names.xmla"],
    "scripts": ["cubes/database.xmla", "scripts/shop.xmla", "reader/details.xmla"],
}


def put(target, name, content):
    folder = seeds / target
    folder.mkdir(parents=True, exist_ok=True)
    (folder / name).write_bytes(content)


def files_below(folder):
    return [path for path in sorted(folder.rglob("*")) if path.is_file()]


def together(files):
    return b"\n".join(b"@ %s\n%s" % (name.encode(), path.read_bytes()) for name, path in files)


def archive(path, report, compression):
    with zipfile.ZipFile(path, "w", compression) as made:
        made.writestr("DataModelSchema", (root / "examples/ferry-line.bim").read_text().encode("utf-16-le"))
        for part in files_below(report):
            made.write(part, "Report/" + part.relative_to(report).as_posix())


def database(path, definitions, folder):
    estate = pathlib.Path(folder, "estate.db")
    estate.unlink(missing_ok=True)
    command = [program, "import", "--quiet", "--estate", estate, *definitions]
    subprocess.run(command, check=True, stdout=subprocess.DEVNULL)
    with sqlite3.connect(estate) as connection:
        connection.execute("PRAGMA journal_mode = delete")
        connection.execute("PRAGMA page_size = 512")  # most of a page of 4 KB would be empty
        connection.execute("VACUUM")
    path.write_bytes(estate.read_bytes())


for case in ("pbip", "reports"):
    folder = tests / "host" / case
    put("folder", case, together((path.relative_to(folder).as_posix(), path) for path in files_below(folder)))
for name, paths in ESTATES.items():
    put("estate", name, together((pathlib.Path(path).name, tests / path) for path in paths))

for target in ("archive", "database"):
    (seeds / target).mkdir(parents=True, exist_ok=True)
for report in ("Deck.Report", "Office.Report"):
    for name, compression in (("stored", zipfile.ZIP_STORED), ("deflated", zipfile.ZIP_DEFLATED)):
        archive(seeds / "archive" / f"{report}-{name}", tests / "host/reports" / report, compression)
with tempfile.TemporaryDirectory() as folder:
    for name, paths in ESTATES.items():
        database(seeds / "database" / name, [tests / path for path in paths], folder)
