"""The file system of a lab machine: busybox, the kernel's modules, the installed product with the libraries
that it needs, and the public exercisers that it is compared with; one file that the kernel unpacks."""

import os
import shutil
import stat
import subprocess

HERE = os.path.dirname(os.path.abspath(__file__))
EXERCISERS = ("/usr/sbin/memtester", "/usr/bin/stressapptest")
FOLDERS = ("bin", "dev", "etc", "lab", "proc", "root", "run", "sys", "tmp", "var/lib")


def libraries(ldd_text):
    """The files that the loader would take, from what ldd prints: NAME => PATH (ADDRESS), or PATH (ADDRESS)."""
    found = []
    for line in ldd_text.splitlines():
        words = line.split()
        if "not found" in line:
            raise FileNotFoundError(f"no library {words[0]}")
        path = words[2] if "=>" in words else (words[0] if words else "")
        if path.startswith("/") and path not in found:
            found.append(path)
    return found


def is_elf(path):
    if os.path.islink(path) or not os.path.isfile(path):
        return False
    with open(path, "rb") as file:
        return file.read(4) == b"\x7fELF"


def install(build, tree):
    """The product as it is installed from that build."""
    subprocess.run(["cmake", "--install", build, "--prefix", "/usr", "--strip"], check=True,
                   env=dict(os.environ, DESTDIR=tree), stdout=subprocess.DEVNULL)
    for unused in ("usr/include", "usr/share", "usr/lib/cmake", "usr/lib/x86_64-linux-gnu"):
        shutil.rmtree(os.path.join(tree, unused), ignore_errors=True)


def place(tree, path, goal=None):
    goal = os.path.join(tree, (goal or path).lstrip("/"))
    os.makedirs(os.path.dirname(goal), exist_ok=True)
    shutil.copy(path, goal)


def add_libraries(tree):
    """What all programs and libraries of the tree need of this system, at the same place as here."""
    ours = [os.path.join(folder, name) for folder, _, names in os.walk(os.path.join(tree, "usr"))
            for name in names]
    for path in [path for path in ours if is_elf(path)]:
        text = subprocess.run(["ldd", path], stdout=subprocess.PIPE, text=True).stdout
        for library in libraries(text):
            if not library.startswith(tree) and not os.path.exists(tree + library):
                place(tree, library)


def add_own(tree, programs):
    place(tree, "/bin/busybox")
    place(tree, os.path.join(HERE, "init"), "/init")
    place(tree, os.path.join(HERE, "agent"), "/lab/agent")
    place(tree, os.path.join(programs, "pages"), "/lab/pages")
    with open(os.path.join(tree, "etc/passwd"), "w") as file:
        file.write("root:x:0:0:root:/root:/bin/sh\n")


def pack(tree, goal):
    """All of the tree as the kernel takes it, owned by root; the same tree makes the same file, at any time."""
    names = ["."]
    for folder, folders, files in os.walk(tree):
        names += [os.path.relpath(os.path.join(folder, name), tree) for name in folders + files]
    for name in names:
        path = os.path.join(tree, name)
        if not os.path.islink(path):
            os.chmod(path, stat.S_IMODE(os.stat(path).st_mode) & ~0o022)
        os.utime(path, (0, 0), follow_symlinks=False)
    with open(goal, "wb") as file:
        cpio = subprocess.Popen(["cpio", "--quiet", "--reproducible", "-o", "-H", "newc", "-R", "0:0"],
                                cwd=tree, stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        gzip = subprocess.Popen(["gzip", "-1n"], stdin=cpio.stdout, stdout=file)
        cpio.stdout.close()
        cpio.stdin.write("".join(name + "\n" for name in sorted(names)).encode())
        cpio.stdin.close()
        if cpio.wait() or gzip.wait():
            raise OSError(f"{goal} cannot be packed")


def make(build, kernel, programs, folder):
    """Makes `folder`/initramfs of the product built in `build`, and gives its path."""
    tree = os.path.join(folder, "tree")
    shutil.rmtree(tree, ignore_errors=True)
    for name in FOLDERS:
        os.makedirs(os.path.join(tree, name))
    install(build, tree)
    for path in EXERCISERS:
        place(tree, path)
    add_libraries(tree)
    add_own(tree, programs)
    shutil.copytree(os.path.join(kernel, "lib"), os.path.join(tree, "lib"), dirs_exist_ok=True)
    goal = os.path.join(folder, "initramfs")
    pack(tree, goal)
    shutil.rmtree(tree)
    return goal
