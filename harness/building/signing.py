"""Signs programs, as the maker or in another name."""
import subprocess
from pathlib import Path

from harness.building.certificates import DAYS, made_once, openssl

MAKER = "Corvane Works, Inc."


def sign(source: Path, target: Path, name: str = MAKER) -> Path:
    """Writes a signed copy of a program."""
    def make(folder: Path) -> None:
        openssl(folder, "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", DAYS, "-subj", f"/O={name}/CN={name}",
                "-addext", "extendedKeyUsage=codeSigning", "-keyout", "key.pem", "-out", "certificate.pem")

    folder = made_once(f"signs as {name}", make)
    target.unlink(missing_ok=True)
    done = subprocess.run(["osslsigncode", "sign", "-h", "sha256", "-certs", folder / "certificate.pem",
                           "-key", folder / "key.pem", "-in", source, "-out", target], capture_output=True, text=True)
    if done.returncode:
        raise RuntimeError(f"osslsigncode failed:\n{done.stdout}{done.stderr}")
    return target
