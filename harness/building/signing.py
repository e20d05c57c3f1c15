"""Signs programs, as the maker or in another name."""
import ssl
import subprocess
from pathlib import Path

from harness.building.certificates import DAYS, made_once, openssl

MAKER = "Corvane Works, Inc."


def sign(source: Path, target: Path, name: str = MAKER, authority: str = "") -> Path:
    """Writes a signed copy of a program. The certificate is self-signed, or issued by an authority of another name,
    whose certificate is the first in the signature."""
    folder = certificate(name, authority)
    target.unlink(missing_ok=True)
    done = subprocess.run(["osslsigncode", "sign", "-h", "sha256", "-certs", folder / "certificates.pem",
                           "-key", folder / "key.pem", "-in", source, "-out", target], capture_output=True, text=True)
    if done.returncode:
        raise RuntimeError(f"osslsigncode failed:\n{done.stdout}{done.stderr}")
    if authority:
        own, other = (ssl.PEM_cert_to_DER_cert((folder / name).read_text()) for name in ("own.pem", "authority.pem"))
        # Wine lists the last one first.
        target.write_bytes(target.read_bytes().replace(other + own, own + other))
    return target


def certificate(name: str = MAKER, authority: str = "") -> Path:
    """The folder with a certificate (certificates.pem, with the authority's) and its key (key.pem), made once."""
    def make(folder: Path) -> None:
        new = ("req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", DAYS)
        issuer = ("-CA", "authority.pem", "-CAkey", "authority.key") if authority else ()
        if authority:
            openssl(folder, *new, "-subj", f"/O={authority}/CN={authority}", "-keyout", "authority.key",
                    "-out", "authority.pem")
        openssl(folder, *new, *issuer, "-subj", f"/O={name}/CN={name}", "-addext", "extendedKeyUsage=codeSigning",
                "-keyout", "key.pem", "-out", "own.pem")
        files = [folder / "own.pem"] + [folder / "authority.pem"] * bool(authority)
        (folder / "certificates.pem").write_text("".join(file.read_text() for file in files))

    return made_once(f"signs as {name}, issued by {authority or name}", make)
