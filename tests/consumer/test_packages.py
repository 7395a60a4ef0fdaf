"""Installs and packs the library, installs the packages, and builds and runs somebody else's programs against the results.

test_packages.py [--release FOLDER] [--win32 FOLDER]: built build folders; everything is made in FOLDER/packages.
"""

import argparse
import os
import pathlib
import re
import shutil
import subprocess
import sys
import unittest
import zipfile

HERE = pathlib.Path(__file__).resolve().parent
TOP = HERE.parent.parent
PRINTED = {
    "interface": "9 -36 30 -36 192 -180 30 -180 180 \n"
    "F07ADF/DGETRF: U(1, 1) is exactly zero: the matrix is singular\n",
    "exports": "7.5 -1.5 -2.5 3\n",
    "numbers": "1.41421356237309504880168872420969807857\n",
}
# A user who is not root is one in a namespace of their own.
AS_ROOT = [] if os.name != "posix" or os.geteuid() == 0 else ["unshare", "--map-root-user"]
OPTIONS = argparse.Namespace(release=None, win32=None)


def run(*command, **options):
    """Standard output of a command that must succeed."""
    done = subprocess.run([str(word) for word in command], capture_output=True, text=True, check=False, **options)
    if done.returncode != 0:
        raise AssertionError(f"{command} ended with {done.returncode}:\n{done.stdout}{done.stderr}")
    return done.stdout


def empty_folder(path):
    shutil.rmtree(path, ignore_errors=True)
    path.mkdir(parents=True)
    return path


def files_below(root):
    """What stands there, without the package manager's notes and the loader's cache."""
    notes = (root / "var", root / "etc/ld.so.cache")
    return {path for path in root.rglob("*") if not any(path == note or note in path.parents for note in notes)}


def environment(**changes):
    return {**os.environ, **{name: str(value) for name, value in changes.items()}}


class Consumer(unittest.TestCase):
    def check_output(self, name, printed):
        self.assertEqual(printed.replace("\r\n", "\n"), PRINTED[name], name)

    def check_cmake(self, prefix, folder, *options, runner=()):
        """The consumer finds the package under the prefix, and its programs run."""
        build = empty_folder(folder)
        run("cmake", "-G", "Ninja", "-S", HERE, "-B", build, f"-DCMAKE_PREFIX_PATH={prefix}", *options)
        self.assertIn(str(prefix), (build / "CMakeCache.txt").read_text().split("tesk2mp_DIR:PATH=")[1].split("\n")[0])
        run("cmake", "--build", build)
        for library in prefix.glob("bin/*.dll"):  # a Windows program looks for them beside itself
            shutil.copy(library, build)
        for name in PRINTED:
            program = build / (name + (".exe" if runner else ""))
            self.check_output(name, run(*runner, program))

    def check_pkg_config(self, prefix, folder):
        build = empty_folder(folder)
        search = environment(PKG_CONFIG_PATH=prefix / "lib/pkgconfig")
        flags = run("pkg-config", "--cflags", "--libs", "tesk2mp", env=search).split()
        library = run("pkg-config", "--variable=libdir", "tesk2mp", env=search).strip()
        for name in PRINTED:
            run("g++", "-std=c++20", "-Wall", "-Wextra", "-Werror", HERE / f"{name}.cpp", "-o", build / name, *flags)
            self.check_output(name, run(build / name, env=environment(LD_LIBRARY_PATH=library)))

    def check_console(self, prefix):
        """The installed program finds the installed libraries."""
        loaded = run("ldd", prefix / "bin/quarn")
        self.assertIn(str((prefix / "lib").resolve()), os.path.realpath(re.search(r"libtesk2mp\S* => (\S+)", loaded)[1]))
        printed = run(prefix / "bin/quarn", "fft", "-", "--digits", "30", input="1\n2\n4\n8\n")
        self.assertIn("7.5000", printed)

    def check_python(self, prefix):
        """The installed module works, with the installed libraries."""
        modules = prefix / "lib/python3/dist-packages"
        program = "import tesk2mp; print(tesk2mp.__file__, *tesk2mp.solve([[4, 1], [2, 3]], [1, 2]))"
        printed = run("/usr/bin/python3", "-c", program, env=environment(PYTHONPATH=modules, PYTHONDONTWRITEBYTECODE=1))
        self.assertEqual(printed.split(), [str(modules / "tesk2mp/__init__.py"), "0.1", "0.6"])

    def check_binaries(self, *folders):
        """No file looks for libraries in the current folder, and all are hardened."""
        run(sys.executable, TOP / "tests/binaries/binaries.py", "--hardened", "--installed", *folders)


class Linux(Consumer):
    def setUp(self):
        if OPTIONS.release is None:
            self.skipTest("no release build given")
        self.folder = OPTIONS.release / "packages"

    def test_installed_tree(self):
        prefix = empty_folder(self.folder / "tree")
        run("cmake", "--install", OPTIONS.release, "--prefix", prefix)
        self.check_binaries(prefix)
        self.check_cmake(prefix, self.folder / "consumer")
        self.check_pkg_config(prefix, self.folder / "consumer-pkg")
        self.check_console(prefix)
        self.check_python(prefix)
        with self.subTest("a moved tree works too"):
            moved = self.folder / "moved"
            shutil.rmtree(moved, ignore_errors=True)
            prefix.rename(moved)
            self.check_cmake(moved, self.folder / "consumer")
            self.check_console(moved)
            self.check_python(moved)

    def test_debian_packages(self):
        for old in self.folder.glob("*.deb"):
            old.unlink()
        run("cpack", "-G", "DEB", cwd=OPTIONS.release)
        packages = {path.name.split("_")[0]: path for path in self.folder.glob("*.deb")}
        self.assertLessEqual({"libtesk2mp0", "libtesk2mp-dev", "python3-tesk2mp", "quarn"}, set(packages))
        depends = {name: run("dpkg-deb", "-f", path, "Depends") for name, path in packages.items()}
        self.assertIn("libc6", depends["libtesk2mp0"])
        for name in set(packages) - {"libtesk2mp0"}:
            self.assertIn("libtesk2mp0", depends[name], name)
        self.assertRegex(depends["python3-tesk2mp"], r"python3 \(>= 3\.[0-9]+\), python3 \(<< 3\.[0-9]+\)")
        root = empty_folder(self.folder / "root")
        self.make_system(root, set(packages), depends.values())
        before = files_below(root)
        # In the order that their dependencies ask for: the library first.
        run(*AS_ROOT, "dpkg", f"--root={root}", "--install", *sorted(packages.values(), key=lambda path: path.name))
        states = {name: run("dpkg-query", f"--admindir={root / 'var/lib/dpkg'}", "-W", "-f=${Status}", name) for name in packages}
        self.assertEqual(set(states.values()), {"install ok installed"}, states)
        self.assertTrue((root / "usr/share/doc").is_dir())
        self.assertTrue((root / "etc/ld.so.cache").exists(), "the library's own script informs the loader")
        # Inside, nothing of the build is in reach.
        printed = run(*AS_ROOT, "chroot", root, "/usr/bin/quarn", "fft", "-", "--digits", "30", input="1\n2\n4\n8\n")
        self.assertIn("7.5000", printed)
        self.check_cmake(root / "usr", self.folder / "consumer-deb")
        self.check_pkg_config(root / "usr", self.folder / "consumer-deb-pkg")
        self.check_console(root / "usr")
        self.check_python(root / "usr")
        alone = subprocess.run([*AS_ROOT, "dpkg", f"--root={root}", "--remove", "libtesk2mp0"], capture_output=True, check=False)
        self.assertNotEqual(alone.returncode, 0, "others depend on the library")
        run(*AS_ROOT, "dpkg", f"--root={root}", "--purge", *packages)
        self.assertEqual(files_below(root) - before, set())

    def test_wheel(self):
        """Built in one environment, without a network, and used in an empty one, which knows nothing of the build."""
        folder = empty_folder(self.folder / "wheel")
        maker, user = folder / "maker", folder / "user"
        run("/usr/bin/python3", "-m", "venv", "--system-site-packages", maker)
        offline = {"TESK_BUILD": OPTIONS.release, "PIP_NO_INDEX": 1, "PIP_DISABLE_PIP_VERSION_CHECK": 1}
        run(maker / "bin/pip", "wheel", "--no-build-isolation", "-w", folder, TOP, env=environment(**offline))
        (wheel,) = folder.glob("*.whl")
        with zipfile.ZipFile(wheel) as contents:
            files = {name.partition("/")[2]: name for name in contents.namelist() if name.startswith("tesk2mp/")}
            libraries = [name for name in files if re.search(r"\.so(\.\d+)?$", name)]
            self.assertEqual(len(libraries), 4, libraries)
            self.assertLessEqual({"__init__.py", "__init__.pyi", "py.typed"}, set(files))
            contents.extractall(folder / "unpacked")
        version = run("/usr/bin/python3", "-c", "import sys; print(*sys.version_info[:2], sep='')").strip()
        platform = f"cp{version}-cp{version}-linux_{os.uname().machine}.whl"
        self.assertRegex(wheel.name, rf"^tesk2mp-[\d.]+-{re.escape(platform)}$")
        for library in libraries:
            told = run("readelf", "-d", folder / "unpacked/tesk2mp" / library)
            self.assertEqual(re.findall(r"\((?:RUNPATH|RPATH)\).*\[(.*)\]", told), ["$ORIGIN"], library)
        shutil.rmtree(folder / "unpacked")
        run("/usr/bin/python3", "-m", "venv", user)
        run(user / "bin/pip", "install", wheel, env=environment(**offline))
        program = (
            "import re, tesk2mp; print(tesk2mp.__version__, *tesk2mp.solve([[4, 1], [2, 3]], [1, 2], digits=40));"
            "print(*sorted(set(re.findall(r'/\\S*(?:tesk2mp|quarnc|qrnfloat)\\S*\\.so\\S*', open('/proc/self/maps').read()))))"
        )
        printed = run(user / "bin/python", "-I", "-c", program, cwd="/").splitlines()
        self.assertEqual(printed[0].split(), [wheel.name.split("-")[1], "0.1", "0.6"])
        home = user / f"lib/python{version[0]}.{version[1:]}/site-packages/tesk2mp"
        self.assertEqual([os.path.dirname(path) for path in printed[1].split()], [str(home)] * 4)
        run(user / "bin/python", TOP / "tests/python/test_context.py", cwd="/")
        run(user / "bin/pip", "uninstall", "-y", "tesk2mp")
        self.assertFalse(home.exists())
        run(maker / "bin/pip", "install", "--no-build-isolation", TOP, env=environment(**offline))
        self.assertIn("0.6", run(maker / "bin/python", "-I", "-c", program, cwd="/"))

    def make_system(self, root, ours, depends):
        """A system of its own: this one's shell, loader and libraries, and its word for the packages that are there."""
        for name in ("usr/bin", "usr/sbin", "usr/lib", "usr/lib64", "etc", "tmp", "var/lib/dpkg/info", "var/lib/dpkg/updates"):
            (root / name).mkdir(parents=True)
        for name in ("bin", "sbin", "lib", "lib64"):
            (root / name).symlink_to(f"usr/{name}")
        status = ""
        for name in sorted(set(re.findall(r"(?:^|, )([a-z0-9.+-]+)", "\n".join(depends), re.MULTILINE)) - ours):
            status += run("dpkg-query", "-s", name).rstrip() + "\n\n"
        (root / "var/lib/dpkg/status").write_text(status)
        programs = ["/bin/sh", "/sbin/ldconfig", OPTIONS.release / "bin/quarn"]
        files = {str(program) for program in programs[:2]}
        for program in programs:
            listed = subprocess.run(["ldd", program], capture_output=True, text=True, check=False).stdout
            files |= {path for path in re.findall(r"(/\S+) \(0x", listed) if not path.startswith(str(OPTIONS.release))}
        for file in files:
            (root / file[1:]).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(file, root / file[1:])
        if pathlib.Path("/sbin/ldconfig.real").exists():  # which a script of that name calls
            shutil.copy("/sbin/ldconfig.real", root / "sbin/ldconfig.real")


class Windows(Consumer):
    def test_zip(self):
        if OPTIONS.win32 is None:
            self.skipTest("no win32 build given")
        folder = OPTIONS.win32 / "packages"
        for old in folder.glob("*.zip"):
            old.unlink()
        run("cpack", "-G", "ZIP", cwd=OPTIONS.win32)
        (archive,) = folder.glob("*.zip")
        unpacked = empty_folder(folder / "unpacked")
        with zipfile.ZipFile(archive) as contents:
            contents.extractall(unpacked)
        prefix = unpacked / archive.stem
        self.check_binaries(prefix)
        self.check_cmake(
            prefix,
            folder / "consumer",
            f"-DCMAKE_TOOLCHAIN_FILE={TOP / 'cmake/win32.cmake'}",
            f"-DCMAKE_FIND_ROOT_PATH={prefix}",
            "-DCMAKE_EXE_LINKER_FLAGS=-static-libgcc -static-libstdc++",
            runner=(TOP / "tools/wine-run",),
        )
        self.assertIn("1e-40", run(TOP / "tools/wine-run", prefix / "bin/quarn.exe", "constants", "--digits", "40"))


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--release", type=lambda path: pathlib.Path(path).resolve())
    parser.add_argument("--win32", type=lambda path: pathlib.Path(path).resolve())
    parser.parse_args(namespace=OPTIONS)
    result = unittest.main(argv=sys.argv[:1], exit=False, verbosity=2).result
    print(f"note: {result.testsRun - len(result.skipped)} packages installed, built against and used")
    sys.exit(not result.wasSuccessful())


if __name__ == "__main__":
    main()
