import os
import subprocess
import tempfile
import unittest
import unittest.mock

from lab.image import image, kernel

MODULES_DEP = """kernel/drivers/nvme/host/nvme.ko: kernel/drivers/nvme/host/nvme-core.ko kernel/lib/crc.ko
kernel/drivers/nvme/host/nvme-core.ko: kernel/block/t10-pi.ko
kernel/block/t10-pi.ko: kernel/lib/crc.ko
kernel/lib/crc.ko:
kernel/arch/x86/mce-inject.ko:
"""


class ModulesOfTheKernel(unittest.TestCase):
    def test_what_a_module_needs_comes_before_it_and_once(self):
        self.assertEqual([os.path.basename(path) for path in kernel.closure(MODULES_DEP, ["nvme"])],
                         ["crc.ko", "t10-pi.ko", "nvme-core.ko", "nvme.ko"])

    def test_dash_and_underscore_are_the_same_in_a_name(self):
        self.assertEqual(kernel.closure(MODULES_DEP, ["mce_inject"]), ["kernel/arch/x86/mce-inject.ko"])

    def test_a_module_that_is_not_there_is_an_error_with_its_name(self):
        with self.assertRaisesRegex(kernel.KernelError, "no module floppy"):
            kernel.closure(MODULES_DEP, ["floppy"])


class PackageOfTheKernel(unittest.TestCase):
    def test_is_what_the_leading_package_depends_on(self):
        self.assertEqual(kernel.package_name("linux-image-amd64\n  Depends: linux-image-6.1.0-9-amd64\n"),
                         "linux-image-6.1.0-9-amd64")

    def test_without_package_lists_the_error_says_what_to_do(self):
        with self.assertRaisesRegex(kernel.KernelError, "apt-get update"):
            kernel.package_name("")


class PackageLists(unittest.TestCase):
    """`get` fails so often before it gives its argument back."""

    def get(self, times, error=kernel.KernelError("gone")):
        failures = [error] * times

        def get(value):
            if failures:
                raise failures.pop()
            return value
        return get

    def test_are_fetched_anew_where_a_package_is_not_found(self):
        with unittest.mock.patch.object(kernel, "update") as update:
            self.assertEqual(kernel.with_new_lists(self.get(1), "it"), "it")
        update.assert_called_once()

    def test_are_left_alone_where_it_is_found(self):
        with unittest.mock.patch.object(kernel, "update") as update:
            self.assertEqual(kernel.with_new_lists(self.get(0), "it"), "it")
        update.assert_not_called()

    def test_that_do_not_help_leave_an_error(self):
        failed = subprocess.CalledProcessError(100, "apt-cache")
        with unittest.mock.patch.object(kernel, "update"):
            for error in (kernel.KernelError("gone"), failed):
                with self.assertRaises(kernel.KernelError):
                    kernel.with_new_lists(self.get(2, error), "it")


class Libraries(unittest.TestCase):
    def test_those_with_a_path_are_taken_and_the_kernels_own_is_not(self):
        text = ("\tlinux-vdso.so.1 (0x1)\n\tlibuv.so.1 => /lib/libuv.so.1 (0x2)\n"
                "\t/lib64/ld-linux-x86-64.so.2 (0x3)\n")
        self.assertEqual(image.libraries(text), ["/lib/libuv.so.1", "/lib64/ld-linux-x86-64.so.2"])

    def test_a_program_without_any_has_none(self):
        self.assertEqual(image.libraries("\tstatically linked\n"), [])

    def test_one_that_is_missing_is_an_error(self):
        with self.assertRaisesRegex(FileNotFoundError, "libuv.so.1"):
            image.libraries("\tlibuv.so.1 => not found\n")


class TheImage(unittest.TestCase):
    def setUp(self):
        self._folder = tempfile.TemporaryDirectory()
        self.addCleanup(self._folder.cleanup)
        self.tree = os.path.join(self._folder.name, "tree")
        os.makedirs(os.path.join(self.tree, "lab"))
        with open(os.path.join(self.tree, "lab", "agent"), "w") as file:
            file.write("#!/bin/sh\n")
        os.chmod(os.path.join(self.tree, "lab", "agent"), 0o777)
        self.goal = os.path.join(self._folder.name, "initramfs")

    def listed(self):
        image.pack(self.tree, self.goal)
        unpacked = subprocess.run(["gzip", "-dc", self.goal], stdout=subprocess.PIPE, check=True).stdout
        return subprocess.run(["cpio", "-tv", "--quiet", "-n"], input=unpacked, stdout=subprocess.PIPE,
                              check=True).stdout.decode()

    def test_has_every_file(self):
        self.assertIn("lab/agent", self.listed())

    def test_is_the_same_file_whenever_it_is_made(self):
        files = []
        for time in (1, 2):
            os.utime(os.path.join(self.tree, "lab", "agent"), (time, time))
            image.pack(self.tree, self.goal)
            with open(self.goal, "rb") as file:
                files.append(file.read())
        self.assertEqual(files[0], files[1])

    def test_belongs_to_root_and_nobody_else_can_write_it(self):
        line = next(line for line in self.listed().splitlines() if line.endswith("lab/agent"))
        self.assertEqual(line.split()[0], "-rwxr-xr-x")
        self.assertEqual(line.split()[2:4], ["0", "0"])


if __name__ == "__main__":
    unittest.main()
