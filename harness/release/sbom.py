"""The bill of materials of a release, SPDX 2.3 as JSON, and a check of one."""
import hashlib
import re
from datetime import datetime, timezone

from harness.release import parts

NAME = "sbom.spdx.json"
SUMS = "SHA256SUMS"
MAKER = "Corvane Works, Inc."
LIBRARY = "PalisadeBootstrapper.dll"


def _id(name: str) -> str:
    return "SPDXRef-" + re.sub(r"[^A-Za-z0-9.]+", "-", name).strip("-")


def write(version: str, date: int, files: dict[str, bytes], found: list[parts.Found]) -> dict:
    """`files` are the archive's, by name, without this one and the list of sums; `date` is in seconds since 1970."""
    own = _id("Palisade-installer")
    library = files[LIBRARY]
    unknown = {"licenseConcluded": "NOASSERTION", "copyrightText": "NOASSERTION"}
    rows = [{"SPDXID": _id("File-" + name), "fileName": "./" + name, "licenseInfoInFiles": ["NOASSERTION"], **unknown,
             "checksums": [{"algorithm": "SHA1", "checksumValue": hashlib.sha1(data).hexdigest()},
                           {"algorithm": "SHA256", "checksumValue": hashlib.sha256(data).hexdigest()}]}
            for name, data in files.items()]
    packages = [{"SPDXID": own, "name": "Palisade app installer", "versionInfo": version, "filesAnalyzed": True,
                 "supplier": f"Organization: {MAKER}", "downloadLocation": "NOASSERTION",
                 "licenseDeclared": "NOASSERTION", "licenseInfoFromFiles": ["NOASSERTION"], **unknown,
                 "packageVerificationCode": {"packageVerificationCodeValue": _verification_code(rows),
                                             "packageVerificationCodeExcludedFiles": ["./" + NAME, "./" + SUMS]}}]
    relations = [("SPDXRef-DOCUMENT", "DESCRIBES", own)] + [(own, "CONTAINS", row["SPDXID"]) for row in rows]
    for part, release, url in found:
        row = {"SPDXID": _id("Part-" + part.name), "name": part.name, "versionInfo": release, "filesAnalyzed": False,
               "downloadLocation": "NOASSERTION", "licenseDeclared": part.licence, "licenseConcluded": part.licence,
               "copyrightText": part.holder, "comment": f"licences/{parts.file_name(part)}"}
        if url:
            row["externalRefs"] = [{"referenceCategory": "PACKAGE-MANAGER", "referenceType": "purl",
                                    "referenceLocator": url}]
        packages.append(row)
        linked = "CONTAINS" if part.origins[0].startswith("file:") else "STATIC_LINK"
        relations.append((_id("File-" + LIBRARY), linked, row["SPDXID"]))
    extracted = {reference: part for part, *_ in found
                 for reference in re.findall(r"LicenseRef-[\w.-]+", part.licence)}
    return {
        "spdxVersion": "SPDX-2.3", "dataLicense": "CC0-1.0", "SPDXID": "SPDXRef-DOCUMENT",
        "name": f"palisade-installer-{version}",
        # Differs for every library, as the standard wants it, and is the same for the same one.
        "documentNamespace": f"https://corvane.invalid/spdx/palisade-installer-{version}-"
                             f"{hashlib.sha256(library).hexdigest()}",
        "creationInfo": {"created": f"{datetime.fromtimestamp(date, timezone.utc):%Y-%m-%dT%H:%M:%SZ}",
                         "creators": [f"Organization: {MAKER}", "Tool: package.sh"]},
        "packages": packages, "files": rows,
        "hasExtractedLicensingInfos": [
            {"licenseId": reference, "name": reference.removeprefix("LicenseRef-"),
             "extractedText": parts.stanza(part, reference.removeprefix("LicenseRef-"))}
            for reference, part in sorted(extracted.items())],
        "relationships": [{"spdxElementId": one, "relationshipType": kind, "relatedSpdxElement": other}
                          for one, kind, other in relations]}


def _verification_code(rows: list[dict]) -> str:
    sums = sorted(row["checksums"][0]["checksumValue"] for row in rows)
    return hashlib.sha1("".join(sums).encode()).hexdigest()


# What the standard asks of each object (its clauses 6 to 11), as patterns of the whole value.
_LICENCE = r"NONE|NOASSERTION|[A-Za-z0-9.+() -]+"
_REQUIRED = {
    "document": {"spdxVersion": r"SPDX-2\.3", "dataLicense": r"CC0-1\.0", "SPDXID": "SPDXRef-DOCUMENT", "name": r".+",
                 "documentNamespace": r"[a-z]+:[^#\s]+"},
    "creationInfo": {"created": r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ"},
    "packages": {"SPDXID": r"SPDXRef-[A-Za-z0-9.-]+", "name": r".+", "downloadLocation": r"NONE|NOASSERTION|\w+:.+",
                 "licenseDeclared": _LICENCE, "licenseConcluded": _LICENCE, "copyrightText": r"(?s).+"},
    "files": {"SPDXID": r"SPDXRef-[A-Za-z0-9.-]+", "fileName": r"\./.+", "licenseConcluded": _LICENCE,
              "copyrightText": r"(?s).+"},
    "hasExtractedLicensingInfos": {"licenseId": r"LicenseRef-[A-Za-z0-9.-]+", "extractedText": r"(?s).+"},
    "relationships": {"spdxElementId": r"SPDXRef-[A-Za-z0-9.-]+", "relatedSpdxElement": r"SPDXRef-[A-Za-z0-9.-]+",
                      "relationshipType": "DESCRIBES|CONTAINS|STATIC_LINK"},
}


def faults(document: dict) -> list[str]:
    """What is not as SPDX 2.3 asks."""
    found = []
    for kind, patterns in _REQUIRED.items():
        rows = [document] if kind == "document" else document.get(kind) or []
        for row in [rows] if isinstance(rows, dict) else rows:
            found += [f"{kind}: {key} is {row.get(key)!r}" for key, pattern in patterns.items()
                      if not re.fullmatch(pattern, str(row.get(key, "")))]
    if not document.get("creationInfo", {}).get("creators"):
        found.append("nobody made it")
    rows = [*document.get("packages", []), *document.get("files", [])]
    ids = [row.get("SPDXID") for row in rows] + ["SPDXRef-DOCUMENT"]
    found += [f"{name} is there twice" for name in sorted(set(ids)) if ids.count(name) > 1]
    for relation in document.get("relationships", []):
        found += [f"related to {relation[end]}, which is not there" for end in ("spdxElementId", "relatedSpdxElement")
                  if relation.get(end) not in ids]
    used = {name for row in rows for name in re.findall(r"LicenseRef-[\w.-]+", str(row.get("licenseDeclared")))}
    given = {row["licenseId"] for row in document.get("hasExtractedLicensingInfos", [])}
    found += [f"no text for {name}" for name in sorted(used - given)]
    for row in document.get("packages", []):
        code = row.get("packageVerificationCode", {}).get("packageVerificationCodeValue")
        if row.get("filesAnalyzed", True) and code != _verification_code(document.get("files", [])):
            found.append(f"{row['name']}: the verification code is not that of its files")
    return found
