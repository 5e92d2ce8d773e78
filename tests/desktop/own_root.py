"""A root folder of this process's own, with everything of the system's in it and room for folders that the system lacks.

Nothing outside changes, and nothing is left: it lies in memory and in a mount namespace that ends with its processes.
"""

import ctypes
import os
import tempfile
from pathlib import Path

CLONE_NEWNS = 0x00020000
CLONE_NEWUSER = 0x10000000
MS_BIND, MS_REC, MS_PRIVATE = 0x1000, 0x4000, 0x40000
MNT_DETACH = 2
SCRATCH = "/scratch"
libc = ctypes.CDLL(None, use_errno=True)


def enter_own_root(*folders):
    """Makes a root with these folders the root of this process and of all that it starts, for good. Temporary folders are
    made on the same file system as the new folders, so that things can be moved from one to the other."""
    user, group = os.getuid(), os.getgid()
    if libc.unshare(CLONE_NEWNS) != 0:
        _check("unshare", libc.unshare(CLONE_NEWUSER | CLONE_NEWNS))
        Path("/proc/self/setgroups").write_text("deny")
        Path("/proc/self/uid_map").write_text(f"{user} {user} 1")
        Path("/proc/self/gid_map").write_text(f"{group} {group} 1")
    # In a changed root the root folder is no mount whose propagation could be changed; nothing is shared there.
    _mount(None, "/", None, MS_REC | MS_PRIVATE, must_succeed=False)

    root = Path(tempfile.mkdtemp(prefix="harbor-root-"))
    outside = os.open("/", os.O_RDONLY | os.O_DIRECTORY)
    _mount("tmpfs", root, "tmpfs", 0)
    root.chmod(0o755)
    made = {Path(folder).parts[1] for folder in (SCRATCH, *folders)}
    for entry in os.scandir("/"):
        if entry.name in made:
            continue
        inside = root / entry.name
        if entry.is_symlink():
            inside.symlink_to(os.readlink(entry.path))
        elif entry.is_dir():
            inside.mkdir()
            _mount(entry.path, inside, None, MS_BIND | MS_REC)
    working_folder = os.getcwd()
    os.chroot(root)
    for folder in (SCRATCH, *folders):
        Path(folder).mkdir(parents=True)
    tempfile.tempdir = SCRATCH
    os.chdir(working_folder)

    def leave():
        """Back to where the mount point can be taken away; others have never seen what is in it."""
        os.fchdir(outside)
        os.chroot(".")
        os.close(outside)
        tempfile.tempdir = None
        os.chdir(working_folder)
        _check("umount", libc.umount2(os.fsencode(root), MNT_DETACH))
        root.rmdir()

    return leave


def _mount(source, target, kind, flags, must_succeed=True):
    result = libc.mount(
        *(value and os.fsencode(value) for value in (source, target, kind)), ctypes.c_ulong(flags), None
    )
    if must_succeed:
        _check(f"mount {target}", result)


def _check(what, result):
    if result != 0:
        raise OSError(ctypes.get_errno(), what)
