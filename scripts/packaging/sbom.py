"""The bill of materials of a release, an SPDX 2.3 document in JSON."""

import hashlib
import json
import time
import urllib.parse
import uuid

LARKSPAN = "SPDXRef-Package-larkspan"
NAMESPACE = uuid.UUID("5d7c3f0e-9a53-4d5b-8d0c-1f6a2e7b4c91")


def write_sbom(path, folder, programs, components, version, epoch):
    files = [_file(folder, program) for program in programs]
    document = {
        "spdxVersion": "SPDX-2.3",
        "dataLicense": "CC0-1.0",
        "SPDXID": "SPDXRef-DOCUMENT",
        "name": f"larkspan-{version}-windows",
        "documentNamespace": f"urn:uuid:{_identity(files, components, epoch)}",
        "creationInfo": {
            "created": time.strftime("%Y-%m-%dT%H:%M:%SZ", time.gmtime(epoch)),
            "creators": [f"Tool: larkspan-package-{version}"],
        },
        "packages": [_larkspan(version)] + [_package(component) for component in components],
        "files": files,
        "hasExtractedLicensingInfos": [_extracted(component) for component in components
                                       if not component.licence],
        "relationships": _relationships(programs, components),
    }
    path.write_text(json.dumps(document, indent=2) + "\n", encoding="utf-8")


def _identity(files, components, epoch):
    """The same for the same release, another one for any other."""
    known = json.dumps([files, [_package(component) for component in components], epoch])
    return uuid.uuid5(NAMESPACE, known)


def _file_id(program):
    return "SPDXRef-File-" + program.replace("/", "-")


def _file(folder, program):
    content = (folder / program).read_bytes()
    return {
        "SPDXID": _file_id(program),
        "fileName": f"./{program}",
        "fileTypes": ["BINARY"],
        "checksums": [
            {"algorithm": "SHA1", "checksumValue": hashlib.sha1(content).hexdigest()},
            {"algorithm": "SHA256", "checksumValue": hashlib.sha256(content).hexdigest()},
        ],
        "licenseConcluded": "NOASSERTION",
        "copyrightText": "NOASSERTION",
    }


def _larkspan(version):
    return {
        "SPDXID": LARKSPAN,
        "name": "larkspan",
        "versionInfo": version,
        "primaryPackagePurpose": "APPLICATION",
        "downloadLocation": "NOASSERTION",
        "filesAnalyzed": False,
        "licenseConcluded": "NOASSERTION",
        "licenseDeclared": "NOASSERTION",
        "copyrightText": "NOASSERTION",
    }


def _package_id(component):
    return f"SPDXRef-Package-{component.name}"


def _licence_reference(component):
    return f"LicenseRef-{component.name}"


def _package(component):
    return {
        "SPDXID": _package_id(component),
        "name": component.name,
        "versionInfo": component.version,
        "supplier": "Organization: Debian",
        "primaryPackagePurpose": "LIBRARY",
        "downloadLocation": "NOASSERTION",
        "filesAnalyzed": False,
        "licenseConcluded": "NOASSERTION",
        "licenseDeclared": component.licence or _licence_reference(component),
        "licenseComments": f"third-party/{component.name}.txt is Debian's copyright file.",
        "copyrightText": "NOASSERTION",
        "externalRefs": [{
            "referenceCategory": "PACKAGE-MANAGER",
            "referenceType": "purl",
            "referenceLocator": f"pkg:deb/debian/{component.source}@{_quoted(component)}?arch=source",
        }],
    }


def _quoted(component):
    return urllib.parse.quote(component.source_version, safe="~")


def _extracted(component):
    return {
        "licenseId": _licence_reference(component),
        "name": f"The licences of {component.name}",
        "extractedText": component.copyright.read_text(encoding="utf-8"),
    }


def _relationships(programs, components):
    relations = [("SPDXRef-DOCUMENT", "DESCRIBES", LARKSPAN)]
    for program in programs:
        relations.append((LARKSPAN, "CONTAINS", _file_id(program)))
        relations.extend((_file_id(program), _use(component), _package_id(component))
                         for component in components
                         if program.rpartition("/")[2] in component.programs)
    return [{"spdxElementId": one, "relationshipType": kind, "relatedSpdxElement": other}
            for one, kind, other in relations]


def _use(component):
    return "DEPENDS_ON" if component.headers_only else "STATIC_LINK"
