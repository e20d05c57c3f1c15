"""What ./test.sh sees of the release package: made unsigned and signed, twice each, then with faults to be found."""
from harness.building import signing
from harness.places import OUT
from harness.release import check, package, parts, sbom

QUICK = 1  # level of compression


def trial() -> dict[str, bool]:
    folder = OUT / "package-trial"
    key = signing.certificate()
    unsigned = package.contents()
    archive = package.pack(folder / "unsigned.zip", unsigned, QUICK)
    found = check.checks(archive)

    signed = package.contents(package.Signing(key / "certificates.pem", key / "key.pem"))
    other = package.pack(folder / "signed.zip", signed, QUICK)
    found["signed with a test certificate holds as well"] = \
        all(check.checks(other, key / "certificates.pem").values()) and b"Corvane" in signed["RELEASE.txt"]
    found["is refused with a signature that no authority vouches for"] = not all(check.checks(other).values())
    again = package.contents(package.Signing(key / "certificates.pem", key / "key.pem"))
    found["has the same bytes when it is made again"] = \
        package.pack(folder / "again.zip", again, QUICK).read_bytes() == other.read_bytes()

    missing = {name: data for name, data in unsigned.items() if name not in ("licences/zlib.txt", sbom.SUMS)}
    seen = check.checks(package.pack(folder / "broken.zip", package.with_sums(missing), QUICK))
    found["is refused without a licence"] = not seen[check.LICENCES] and seen[check.SUMS_AGREE]
    changed = unsigned | {sbom.LIBRARY: unsigned[sbom.LIBRARY] + b"!"}
    found["is refused with a changed library"] = \
        not check.checks(package.pack(folder / "broken.zip", changed, QUICK))[check.SUMS_AGREE]

    built = {part.name: (release, part.licence) for part, release, _ in parts.find()}
    documented = check.documented()
    differ = [name for name in built | documented if name not in built or name not in documented
              or not built[name][0].startswith(documented[name][0]) or built[name][1] != documented[name][1]]
    return found | {f"is described in docs/third-party.md {differ or ''}".rstrip(): not differ}
