#!/usr/bin/env bash
# Makes the release that is made once more, from a copy of the sources in another folder, and compares: every file
# has the same bytes, though the place and the time differ.
#
#   tests/release/again.sh

source "$(dirname "${BASH_SOURCE[0]}")/../../scripts/release-steps.sh"

copy=$(mktemp -d)
trap 'rm -rf "$copy"' EXIT
mkdir "$copy/sources"
tar -C "$ROOT" --exclude=./build --exclude=./.git -c . | tar -C "$copy/sources" -x
# A compiler cache would answer with the first objects.
CCACHE_DISABLE=1 TOLVANE_BUILD='' "$copy/sources/scripts/release.sh"
again=$copy/sources/build/release-$RELEASE_VERSION
diff -u "$RELEASE/SHA256SUMS" "$again/SHA256SUMS" || fail "the second time other files are made"
(cd "$again" && sha256sum --quiet -c SHA256SUMS)
(cd "$RELEASE" && sha256sum --quiet -c SHA256SUMS)

# The bill of materials names each file that is given away with its sum, and what is in it.
python3 - "$RELEASE" "${RELEASE_MAINTAINER% <*}" <<'BILL'
import hashlib, json, pathlib, sys

folder = pathlib.Path(sys.argv[1])
[path] = folder.glob("*.cdx.json")
bill = json.loads(path.read_text(encoding="utf-8"))
assert bill["metadata"]["supplier"]["name"] == sys.argv[2], bill["metadata"]
named = {c["name"]: c["hashes"][0]["content"] for c in bill["components"] if c["type"] == "file"}
given = {p.name: hashlib.sha256(p.read_bytes()).hexdigest() for p in folder.iterdir()}
assert named == {name: sum for name, sum in given.items() if name not in (path.name, "README.txt", "SHA256SUMS")}, named
libraries = {c["bom-ref"] for c in bill["components"] if c["type"] == "library"}
parts = {d["ref"]: set(d["dependsOn"]) for d in bill["dependencies"]}
assert set.union(*parts.values()) == libraries, libraries
windows = {"libasio-dev", "g++-mingw-w64-i686-posix", "mingw-w64-i686-dev"}
linux = {"libasio-dev", "libstdc++-12-dev", "libc6-dev", "linux-libc-dev"}
command = {"libcli11-dev", "nlohmann-json3-dev"}
scale = command | {"libboost1.74-dev"}
assert parts["win32/TradeHost.exe"] == windows, parts
assert parts["win32/Tolvane.dll"] == windows | {"firebird-dev"}, parts
assert parts["win32/tolvane.exe"] == windows | command | {"firebird-dev"}, parts
assert parts["win32/virtual-scale.exe"] == windows | scale, parts
assert parts["linux/tolvane"] == linux | command | {"firebird-dev"}, parts
assert parts["linux/virtual-scale"] == linux | scale, parts
beside = {name: parts[name] for name in named if parts[name]}
[zip] = (name for name in named if name.endswith(".zip"))
[setup] = (name for name in named if name.endswith(".exe"))
assert beside == {zip: {"fonts-dejavu-core"}, setup: {"fonts-dejavu-core", "nsis-common"}}, beside
BILL
say "All is as expected."
