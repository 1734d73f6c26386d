"""The kernel of the lab's machines: Debian's own, unpacked and never installed, with the few of its modules
that the lab needs. Kept in a folder of the work, by its version."""

import contextlib
import hashlib
import os
import shutil
import subprocess
import tempfile

MODULES = ("nvme", "virtio_pci", "virtio_scsi", "virtio_blk", "scsi_debug", "sd_mod", "e1000e", "mce-inject",
           "aer_inject", "crc32c_generic", "ext4")


class KernelError(Exception):
    pass


def output_of(*command, **options):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True, **options).stdout


def package_name(depends):
    """The package with the kernel itself, from what `apt-cache depends` says of the one that leads to it."""
    for line in depends.splitlines():
        kind, _, name = line.strip().partition(": ")
        if kind == "Depends" and name.startswith("linux-image-") and "unsigned" not in name:
            return name
    raise KernelError("linux-image-amd64 depends on no kernel: is there a package list (apt-get update)?")


def closure(modules_dep, names):
    """The modules of these names and all that they need, as paths; what is needed comes first.

    `modules_dep` is the text of modules.dep: PATH: PATH-THAT-IT-NEEDS...; a name may have "-" or "_"."""
    needs = {}
    paths = {}
    for line in modules_dep.splitlines():
        path, _, rest = line.partition(":")
        needs[path] = rest.split()
        paths[os.path.basename(path).split(".")[0].replace("-", "_")] = path
    found = []

    def add(path):
        for needed in needs[path]:
            add(needed)
        if path not in found:
            found.append(path)

    for name in names:
        key = name.replace("-", "_")
        if key not in paths:
            raise KernelError(f"the kernel has no module {name}")
        add(paths[key])
    return found


def update():
    """Fetches the package lists anew, where that is allowed: without any, or with old ones, nothing is found."""
    as_root = [] if os.geteuid() == 0 else ["sudo", "-n"]
    with contextlib.suppress(OSError):
        subprocess.run([*as_root, "apt-get", "update", "-q"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


def leading_package():
    return package_name(output_of("apt-cache", "depends", "linux-image-amd64", stderr=subprocess.DEVNULL))


def download(package, folder):
    """Debian's package of that name; apt warns when it may not give up its rights there, and goes on."""
    done = subprocess.run(["apt-get", "download", "-q", package], cwd=folder, text=True,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    packages = [name for name in os.listdir(folder) if name.endswith(".deb")]
    if done.returncode or len(packages) != 1:
        raise KernelError(f"{package} cannot be downloaded: {done.stdout.strip()}")
    return os.path.join(folder, packages[0])


def with_new_lists(get, *arguments):
    """What `get` gives; where it fails, once more with new package lists."""
    try:
        return get(*arguments)
    except (KernelError, subprocess.CalledProcessError):
        update()
    try:
        return get(*arguments)
    except subprocess.CalledProcessError as error:
        raise KernelError(f"the kernel's package is not known: {error}") from error


def keep(unpacked, version, into):
    """Takes the kernel and the modules that are needed out of the unpacked package."""
    subprocess.run(["/sbin/depmod", "-b", unpacked, version], check=True)
    folder = os.path.join("lib/modules", version)
    with open(os.path.join(unpacked, folder, "modules.dep")) as file:
        wanted = closure(file.read(), MODULES)
    for path in wanted + ["modules.builtin", "modules.builtin.modinfo", "modules.order"]:
        goal = os.path.join(into, folder, path)
        os.makedirs(os.path.dirname(goal), exist_ok=True)
        shutil.copy(os.path.join(unpacked, folder, path), goal)
    subprocess.run(["/sbin/depmod", "-b", into, version], check=True)
    shutil.copy(os.path.join(unpacked, f"boot/vmlinuz-{version}"), os.path.join(into, "vmlinuz"))


def fetch(work):
    """The folder with `vmlinuz` and `lib/modules/VERSION`; it is made unless it is there."""
    package = with_new_lists(leading_package)
    version = package[len("linux-image-"):]
    contents = hashlib.sha256(" ".join(MODULES).encode()).hexdigest()[:8]
    goal = os.path.join(work, "kernel", f"{version}-{contents}")
    if os.path.isdir(goal):
        return goal
    os.makedirs(os.path.dirname(goal), exist_ok=True)
    with tempfile.TemporaryDirectory(dir=os.path.dirname(goal)) as folder:
        unpacked, made = os.path.join(folder, "unpacked"), os.path.join(folder, "made")
        deb = with_new_lists(download, package, folder)
        subprocess.run(["dpkg-deb", "-x", deb, unpacked], check=True)
        keep(unpacked, version, made)
        os.rename(made, goal)
    return goal
