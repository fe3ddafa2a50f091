"""Makes the wheel, unpacks it elsewhere and imports a definition of each kind there."""

import os
import subprocess
import sys
import tempfile
import zipfile

with tempfile.TemporaryDirectory() as work:
    made = subprocess.run(
        [sys.executable, "packaging/make_wheel.py", sys.argv[1], work], check=True, stdout=subprocess.PIPE, text=True
    )
    place = os.path.join(work, "unpacked")
    with zipfile.ZipFile(made.stdout.strip()) as wheel:
        wheel.extractall(place)
        names = set(wheel.namelist())
        record = next(name for name in names if name.endswith("/RECORD"))
        listed = {line.split(",")[0] for line in wheel.read(record).decode().splitlines()}
    if listed != names:
        sys.exit(f"the wheel lists other files than it holds: {listed ^ names}")
    asked = (
        "import sys, xmla_bridge\n"
        "assert xmla_bridge.__file__.startswith(sys.argv[1]), xmla_bridge.__file__\n"
        "assert not any(' /' in line and '/libtav' in line and sys.argv[1] not in line for line in\n"
        "               (xmla_bridge.open('examples/ferry-line.bim'), open('/proc/self/maps'))[1])\n"
        "print(xmla_bridge.open('examples/lost-property-create.xmla').name)\n"
    )
    run = subprocess.run([sys.executable, "-c", asked, place], env={**os.environ, "PYTHONPATH": place},
                         check=True, stdout=subprocess.PIPE, text=True)  # fmt: skip
    if run.stdout != "Lost Property\n":
        sys.exit(f"the package of the wheel says {run.stdout!r}")
