"""Prints the bill of materials of a release as CycloneDX 1.5: what is in the table of docs/third-party.md, and
the programs and files of the release with their SHA-256.

usage: release-bill.py VERSION SECONDS MAINTAINER THIRD-PARTY.md RELEASE-FOLDER ZIP-CONTENT LINUX-BUILD
"""

import hashlib
import json
import pathlib
import re
import sys
import time
import uuid


def table(page):
    """The rows of the page's table: component, version, licence, programs, Debian packages."""
    for line in page.read_text(encoding="utf-8").splitlines():
        cells = [cell.strip() for cell in line.strip("|").split("|")]
        if line.startswith("|") and len(cells) == 5 and "`" in cells[4]:
            yield cells[:4] + [re.findall(r"`([^`]+)`", cells[4])]


def library(row):
    name, version, licence, programs, packages = row
    single = " " not in licence
    return {
        "type": "library",
        "bom-ref": packages[0],
        "name": name,
        "version": version,
        "licenses": [{"license": {"id": licence}} if single else {"expression": licence}],
        "properties": [{"name": "tolvane:in", "value": programs}]
        + [{"name": "tolvane:debian-package", "value": package} for package in packages],
    }


def file(path, name, kind, version):
    return {
        "type": kind,
        "bom-ref": name,
        "name": name,
        "version": version,
        "licenses": [{"license": {"id": "MIT"}}],
        "hashes": [{"alg": "SHA-256", "content": hashlib.sha256(path.read_bytes()).hexdigest()}],
    }


def is_in(cell, ref):
    """Whether the table's cell "In" means the component with that reference."""
    folder, _, name = ref.rpartition("/")
    if cell == "installer":
        return name.endswith("-setup.exe")
    if cell == "guide":
        return name.endswith(("-setup.exe", "-win32.zip"))
    if cell.startswith("all"):
        system = {"all for Windows": "win32", "all for Linux": "linux"}.get(cell)
        return folder != "" and system in (None, folder)
    return folder != "" and any(name in (word, word + ".exe") for word in cell.split(", "))


def supplier(maintainer):
    """Of "Name <address>". Nobody can write to a name under "example"."""
    name, address = maintainer.removesuffix(">").split(" <")
    return {"name": name} | ({} if address.endswith(".example") else {"contact": [{"email": address}]})


def main(version, seconds, maintainer, page, release, content, linux):
    content, linux = pathlib.Path(content), pathlib.Path(linux)
    programs = [content / "Operations/Tolvane.dll"] + sorted(content.glob("*.exe"))
    components = [file(path, "win32/" + path.name, "application", version) for path in programs]
    for path in (linux / "src/command/tolvane", linux / "simulator/virtual-scale"):
        components.append(file(path, "linux/" + path.name, "application", version))
    for path in sorted(pathlib.Path(release).iterdir()):
        if path.suffix in (".zip", ".exe", ".deb"):
            components.append(file(path, path.name, "file", version))
    rows = list(table(pathlib.Path(page)))
    dependencies = [
        {"ref": ref, "dependsOn": [row[4][0] for row in rows if is_in(row[3], ref)]}
        for ref in (component["bom-ref"] for component in components)
    ]
    components += [library(row) for row in rows]
    bill = {
        "bomFormat": "CycloneDX",
        "specVersion": "1.5",
        "serialNumber": "urn:uuid:" + str(uuid.uuid5(uuid.NAMESPACE_URL, json.dumps(components))),
        "version": 1,
        "metadata": {
            "timestamp": time.strftime("%Y-%m-%dT%H:%M:%SZ", time.gmtime(int(seconds))),
            "component": {
                "type": "application",
                "bom-ref": "tolvane",
                "name": "Tolvane",
                "version": version,
                "licenses": [{"license": {"id": "MIT"}}],
            },
            "supplier": supplier(maintainer),
        },
        "components": components,
        "dependencies": dependencies,
    }
    print(json.dumps(bill, indent=2, ensure_ascii=False))


if __name__ == "__main__":
    main(*sys.argv[1:])
