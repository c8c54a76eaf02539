"""A disk whose power can be cut: an ext4 file system in an image file on a loop device."""

import fcntl
import os
import shutil
import struct
import subprocess
import sys
import tempfile
from pathlib import Path

IMAGE_SIZE = 1 << 29
EXIT_NOT_POSSIBLE = 77

# From the kernel's ext4 headers. A disk that is shut down in this way keeps what has reached it and
# loses everything else, the file system's own journal included.
EXT4_IOC_SHUTDOWN = 0x8004587D
EXT4_GOING_FLAGS_NOLOGFLUSH = 2


class NoDisk(Exception):
    """This machine or this user cannot make such a disk. The text says what is missing."""


class Disk:
    """Makes and mounts a new disk. Must be closed, or be used in a "with" statement."""

    def __init__(self, folder):
        if os.geteuid() != 0:
            raise NoDisk("power cuts need root, because they mount a disk")
        if not shutil.which("mkfs.ext4"):
            raise NoDisk("power cuts need the program mkfs.ext4, which is not installed")
        self.folder = Path(folder, "disk")
        self.folder.mkdir()
        self.image = Path(folder, "disk.img")
        with open(self.image, "wb") as image:
            image.truncate(IMAGE_SIZE)
        subprocess.run(["mkfs.ext4", "-q", self.image], check=True)
        self._mount()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def sync(self):
        subprocess.run(["sync", "--file-system", self.folder], check=True)

    def cut_power(self):
        """From now on, every access to the disk fails."""
        descriptor = os.open(self.folder, os.O_RDONLY | os.O_DIRECTORY)
        try:
            flags = struct.pack("I", EXT4_GOING_FLAGS_NOLOGFLUSH)
            fcntl.ioctl(descriptor, EXT4_IOC_SHUTDOWN, flags)
        finally:
            os.close(descriptor)

    def restart(self):
        """Mounts the disk again after a cut. No program may have a file open on it."""
        subprocess.run(["umount", self.folder], check=True)
        self._mount()

    def close(self):
        """Unmounts the disk, also while a program has a file open on it. The image file stays."""
        subprocess.run(["umount", "--lazy", self.folder], check=False)

    def _mount(self):
        mount = ["mount", "-o", "loop", self.image, self.folder]
        result = subprocess.run(mount, capture_output=True, text=True, check=False)
        if result.returncode != 0:
            reason = " ".join(result.stderr.split())
            raise NoDisk(f"power cuts need a loop device, and none can be mounted: {reason}")


def main():
    """Ends with status 77 and says why if power cannot be cut here."""
    with tempfile.TemporaryDirectory(prefix="crashtest-") as folder:
        try:
            with Disk(folder) as disk:
                disk.cut_power()
        except (NoDisk, OSError) as reason:
            print(f"tools/crashtest: {reason}", file=sys.stderr)
            sys.exit(EXIT_NOT_POSSIBLE)


if __name__ == "__main__":
    main()
