#!/usr/bin/python3
"""make_wheel.py BUILD DIST: makes a wheel of the package of Python, for the Python that runs this.

It holds the module with all of its parts, but for the libraries of the system and Java.
"""

import base64
import hashlib
import os
import re
import subprocess
import sys
import sysconfig
import tempfile
import zipfile
from pathlib import Path

NAME = "xmla_bridge"
# By what begins a path below the prefix: what begins it in the wheel.
PLACES = {"lib/python3/dist-packages/": "", "lib/": f"{NAME}/lib/", "share/xmla-bridge/java/": f"{NAME}/share/xmla-bridge/java/"}


def place_of(path: str) -> str | None:
    """Where a file of the installed tree lies in the wheel, if it does."""
    for begin, place in PLACES.items():
        if path.startswith(begin):
            rest = path.removeprefix(begin)
            wanted = begin != "lib/" or re.fullmatch(r"lib[^/]*\.so(\.\d+)?", rest)
            return place + rest if wanted else None
    return None


def contents(build: str) -> dict[str, bytes]:
    """The files of the package by their places in the wheel."""
    with tempfile.TemporaryDirectory() as work:
        # The archive of classes fits the place alone that it was made for, so none is made.
        environment = {**os.environ, "DESTDIR": work}
        subprocess.run(["cmake", "--install", build, "--prefix", "/usr", "--strip"], check=True,
                       stdout=subprocess.DEVNULL, env=environment)  # fmt: skip
        tree = Path(work, "usr")
        files = {}
        for path in sorted(tree.rglob("*")):
            place = place_of(path.relative_to(tree).as_posix()) if path.is_file() else None
            if place:
                files[place] = path.read_bytes()
        return files


def version_of(build: str) -> str:
    cache = Path(build, "CMakeCache.txt").read_text(encoding="utf-8")
    return re.search(r"^CMAKE_PROJECT_VERSION:STATIC=(.*)$", cache, re.MULTILINE)[1]


def record_of(place: str, content: bytes) -> str:
    digest = base64.urlsafe_b64encode(hashlib.sha256(content).digest()).rstrip(b"=").decode()
    return f"{place},sha256={digest},{len(content)}"


def main(build: str, dist: str) -> None:
    files = contents(build)
    if not any(place.startswith(f"{NAME}/_native") for place in files):
        sys.exit(f"{build} was built without the package of Python (XMLA_PYTHON)")
    version = version_of(build)
    python = f"cp{sys.version_info.major}{sys.version_info.minor}"
    tag = f"{python}-{python}-{re.sub('[-.]', '_', sysconfig.get_platform())}"
    info = f"{NAME}-{version}.dist-info"
    files[f"{info}/METADATA"] = (
        f"Metadata-Version: 2.1\nName: {NAME.replace('_', '-')}\nVersion: {version}\n"
        "Summary: Metadata models with lineage from Analysis Services definitions\n"
        "License: Apache-2.0\nRequires-Python: >=3.11\n"
    ).encode()
    files[f"{info}/WHEEL"] = (
        f"Wheel-Version: 1.0\nGenerator: make_wheel\nRoot-Is-Purelib: false\nTag: {tag}\n"
    ).encode()
    records = [record_of(place, content) for place, content in files.items()] + [f"{info}/RECORD,,"]
    files[f"{info}/RECORD"] = ("\n".join(records) + "\n").encode()
    Path(dist).mkdir(parents=True, exist_ok=True)
    wheel = Path(dist, f"{NAME}-{version}-{tag}.whl")
    with zipfile.ZipFile(wheel, "w", zipfile.ZIP_DEFLATED) as archive:
        for place, content in files.items():
            archive.writestr(place, content)
    print(wheel)


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(*sys.argv[1:])
