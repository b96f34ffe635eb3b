"""The command `dev` in a tree and on a machine of the test's own: all that it calls is recorded."""
import os
import shutil
import subprocess

import pytest
from conftest import ROOT

VERBS = ("setup", "build", "run", "test", "bench", "check", "fuzz", "clean")
# The real commands that the script is made of; everything else is a stand-in.
REAL = ("bash", "cat", "cmp", "cp", "dirname", "mkdir", "realpath", "rm", "chmod", "touch", "env")
PYTHON = """#!/bin/bash
echo "python3 $*" >> "$CALLS"
if [[ $1 == -m && $2 == venv ]]; then
  mkdir -p "$3/bin"
  cp "$0" "$3/bin/python"
fi
exit "${PYTHON_STATUS:-0}"
"""
CMAKE = """#!/bin/bash
echo "cmake $*" >> "$CALLS"
while [[ $1 != -B ]]; do shift; done
mkdir -p "$2" build/linux-x64/bin
touch "$2/build.ninja"
printf '#!/bin/bash\\necho "host $ORBInstallPath $*" >> "$CALLS"\\n' > build/linux-x64/bin/orbcef_host
chmod +x build/linux-x64/bin/orbcef_host
"""
PACKAGES = "# A comment.\n\ng++\nlibnss3\nmaven: mvn\nnodejs: node\n"


class Machine:
    def __init__(self, tree):
        self._tree = tree
        self.bin = tree.root / "bin"
        self.calls_file = tree.root / "calls"
        shutil.copy(ROOT / "dev", tree.root)
        tree.write("tools/debian-packages.txt", PACKAGES)
        tree.write("tools/debian-packages-windows-x64.txt", "mingw\n")
        tree.write("tests/requirements.txt", "pytest==1\n")
        tree.write("tests/script/package.json", '{"private": true}\n')
        self.bin.mkdir()
        for name in REAL:
            (self.bin / name).symlink_to(shutil.which(name))
        self.command("python3", PYTHON)
        self.command("cmake", CMAKE)
        for name in ("ninja", "apt-get", "sudo", "mvn", "node", "npm"):
            self.command(name, f'#!/bin/bash\necho "{name} $*" >> "$CALLS"\n')
        self.installed("g++", "libnss3")

    def command(self, name, text):
        (self.bin / name).unlink(missing_ok=True)
        self._tree.write(f"bin/{name}", text).chmod(0o755)

    def installed(self, *packages):
        """A package that was removed is still known, so a status has to be asked for."""
        known = "".join(f"{name}) echo -n installed ;;\n" for name in packages)
        self.command(
            "dpkg-query", f'#!/bin/bash\ncase "${{@: -1}}" in\n{known}*) echo -n not-installed;;\nesac\n'
        )

    def dev(self, *arguments, **variables):
        environment = {"PATH": str(self.bin), "CALLS": str(self.calls_file), **variables}
        return subprocess.run(
            ["./dev", *arguments],
            cwd=self._tree.root,
            env=environment,
            stdin=subprocess.DEVNULL,
            capture_output=True,
            text=True,
            timeout=60,
            check=False,
        )

    def calls(self):
        if not self.calls_file.exists():
            return []
        lines = self.calls_file.read_text().splitlines()
        self.calls_file.unlink()
        return lines


@pytest.fixture
def machine(tree):
    return Machine(tree)


def starting(calls, word):
    return [call for call in calls if call.startswith(word)]


def test_alone_it_prints_one_line_for_each_verb(machine):
    done = machine.dev()
    assert done.returncode == 0
    for verb in VERBS:
        assert sum(line.startswith(f"  {verb} ") for line in done.stdout.splitlines()) == 1
    assert machine.calls() == []


@pytest.mark.parametrize(
    "arguments, text",
    [
        (["nonsense"], "there is no verb 'nonsense'"),
        (["build", "macos"], "build knows the targets linux-x64 windows-x64"),
        (["build", "linux-x64", "windows-x64"], "build knows the targets"),
        (["build", "linux-x64 windows-x64"], "build knows the targets"),
        (["setup", "more"], "setup takes no arguments"),
        (["check", "more"], "check takes no arguments"),
        (["clean", "--most"], "clean takes no '--most'"),
    ],
)
def test_wrong_arguments_are_refused(machine, arguments, text):
    done = machine.dev(*arguments)
    assert done.returncode == 1
    assert text in done.stderr
    assert machine.calls() == []


def test_setup_installs_nothing_on_a_complete_machine(machine):
    assert machine.dev("setup").returncode == 0
    assert starting(machine.calls(), "apt-get") == []


@pytest.mark.skipif(os.geteuid() != 0, reason="asks for the call that root makes")
def test_setup_installs_what_is_missing_and_says_so(machine):
    machine.installed("g++")
    (machine.bin / "node").unlink()
    done = machine.dev("setup")
    assert done.returncode == 0
    assert "installing libnss3 nodejs" in done.stderr
    update, install = starting(machine.calls(), "apt-get")
    assert " update" in update
    assert install.endswith("-y --no-install-recommends libnss3 nodejs")


def test_setup_fails_when_the_installation_does(machine):
    machine.installed("g++")
    for name in ("apt-get", "sudo"):
        machine.command(name, "#!/bin/bash\nexit 100\n")
    done = machine.dev("setup")
    assert done.returncode == 1
    assert "could not be updated" in done.stderr


def test_the_python_environment_is_made_once_for_its_requirements(machine, tree):
    machine.dev("setup")
    assert len(starting(machine.calls(), "python3 -m venv")) == 1
    machine.dev("setup")
    assert starting(machine.calls(), "python3 -m venv") == []
    tree.write("tests/requirements.txt", "pytest==2\n")
    machine.dev("setup")
    assert len(starting(machine.calls(), "python3 -m venv")) == 1


def test_the_node_environment_is_made_once_for_its_packages(machine, tree):
    machine.dev("setup")
    assert len(starting(machine.calls(), "npm install")) == 1
    machine.dev("setup")
    assert starting(machine.calls(), "npm install") == []
    tree.write("tests/script/package.json", '{"private": false}\n')
    machine.dev("setup")
    assert len(starting(machine.calls(), "npm install")) == 1


def test_a_node_environment_that_could_not_be_made_is_made_again(machine):
    machine.command("npm", '#!/bin/bash\necho "npm $*" >> "$CALLS"\nexit 1\n')
    for _ in range(2):
        done = machine.dev("setup")
        assert done.returncode == 1
        assert "the Node packages could not be installed" in done.stderr
        assert len(starting(machine.calls(), "npm install")) == 1


def test_setup_gets_the_engine_and_fails_with_it(machine):
    assert machine.dev("setup").returncode == 0
    fetches = [call for call in machine.calls() if "fetch_engine.py" in call]
    assert len(fetches) == 1
    assert fetches[0].endswith("--target linux-x64 --abi 108")
    assert machine.dev("build", PYTHON_STATUS="1").returncode != 0
    assert starting(machine.calls(), "ninja") == []


def test_the_other_interface_needs_no_engine(machine, tree):
    machine.dev("setup", ENGINE_ABI="104")
    assert not any("fetch_engine.py" in call for call in machine.calls())
    machine.dev("setup", ENGINE_ABI="104", ENGINE_ROOT=str(tree.root))
    assert any("fetch_engine.py" in call for call in machine.calls())


def test_build_configures_once_and_again_for_other_options(machine, tree):
    assert machine.dev("build").returncode == 0
    calls = machine.calls()
    assert len(starting(calls, "cmake")) == 1 and len(starting(calls, "ninja")) == 1
    assert "-DENGINE_ABI=108" in starting(calls, "cmake")[0]
    machine.dev("build", "linux-x64")
    calls = machine.calls()
    assert len(starting(calls, "cmake")) == 0 and len(starting(calls, "ninja")) == 1
    machine.dev("build", BUILD_TYPE="Debug", ENGINE_ROOT=str(tree.root))
    configured = starting(machine.calls(), "cmake")[0]
    assert "-DCMAKE_BUILD_TYPE=Debug" in configured
    assert f"-DENGINE_ROOT={tree.root}" in configured


@pytest.mark.skipif(os.geteuid() != 0, reason="asks for the call that root makes")
def test_the_compiler_for_windows_is_installed_only_when_it_is_asked_for(machine):
    machine.dev("build")
    assert starting(machine.calls(), "apt-get") == []
    machine.dev("build", "windows-x64")
    assert starting(machine.calls(), "apt-get")[-1].endswith("--no-install-recommends mingw")


def test_build_for_windows_has_a_folder_an_engine_and_a_toolchain_of_its_own(machine, tree):
    assert machine.dev("build", "windows-x64").returncode == 0
    calls = machine.calls()
    fetch = next(call for call in calls if "fetch_engine.py" in call)
    assert fetch.endswith("--target windows-x64 --abi 108")
    configured = starting(calls, "cmake")[0]
    assert f"-B {tree.root}/build/windows-x64 " in configured
    assert f"-DCMAKE_TOOLCHAIN_FILE={tree.root}/cmake/mingw-w64.cmake" in configured
    assert starting(calls, "ninja") == [f"ninja -C {tree.root}/build/windows-x64 all standin_tests"]
    machine.dev("build")
    calls = machine.calls()
    assert "TOOLCHAIN" not in starting(calls, "cmake")[0]
    assert starting(calls, "ninja") == [f"ninja -C {tree.root}/build/linux-x64"]


def test_run_builds_and_passes_all_arguments_to_the_host(machine, tree):
    done = machine.dev("run", "--url", "data:text/html,a b", "--seconds", "2")
    assert done.returncode == 0, done.stderr
    calls = machine.calls()
    assert len(starting(calls, "ninja")) == 1
    assert calls[-1] == f"host {tree.root}/build/linux-x64/root --url data:text/html,a b --seconds 2"


def test_run_does_not_start_a_host_whose_build_failed(machine):
    machine.dev("build")
    machine.calls()
    machine.command("ninja", "#!/bin/bash\nexit 1\n")
    assert machine.dev("run").returncode != 0
    assert starting(machine.calls(), "host") == []


@pytest.mark.parametrize(
    "arguments, script, passed",
    [
        (
            ["test", "unit", "--gtest_filter=A.*"],
            "tools/run_tests.py",
            " linux-x64 unit --gtest_filter=A.*",
        ),
        (["test", "linux-x64"], "tools/run_tests.py", " linux-x64"),
        (["check"], "tools/run_tests.py", " linux-x64 check"),
        (["bench", "messages"], "bench/run.py", " messages"),
    ],
)
def test_verbs_that_hand_over(machine, tree, arguments, script, passed):
    assert machine.dev(*arguments).returncode == 0
    calls = machine.calls()
    assert len(starting(calls, "ninja")) == 1
    assert calls[-1] == f"python3 {tree.root}/{script}{passed}"


def test_test_alone_builds_and_tests_every_target(machine, tree):
    assert machine.dev("test").returncode == 0
    calls = machine.calls()
    built = ("linux-x64", "windows-x64 all standin_tests", "linux-x64-asan standin_tests",
             "linux-x64-tsan standin_tests", "linux-x64-ubsan stage orbcef_host_test")
    assert starting(calls, "ninja") == [f"ninja -C {tree.root}/build/{name}" for name in built]
    targets = " ".join(name.split()[0] for name in built)
    assert calls[-1] == f"python3 {tree.root}/tools/run_tests.py {targets}"


def test_the_sanitizers_have_builds_of_their_own_on_the_same_engine(machine, tree):
    for name, sanitizer in (("asan", "address"), ("tsan", "thread"), ("ubsan", "undefined")):
        assert machine.dev("build", f"linux-x64-{name}").returncode == 0
        calls = machine.calls()
        (configured,) = starting(calls, "cmake")
        assert f"-B {tree.root}/build/linux-x64-{name} " in configured
        assert f"-DORBCEF_SANITIZE={sanitizer}" in configured
        assert any("fetch_engine.py --target linux-x64 " in call for call in calls)


def test_test_of_windows_alone_leaves_the_other_build_alone(machine, tree):
    assert machine.dev("test", "windows-x64", "unit").returncode == 0
    calls = machine.calls()
    assert starting(calls, "ninja") == [f"ninja -C {tree.root}/build/windows-x64 all standin_tests"]
    assert any("fetch_python.py" in call for call in calls)
    assert calls[-1] == f"python3 {tree.root}/tools/run_tests.py windows-x64 unit"


def test_run_for_windows_starts_the_host_on_wine(machine, tree):
    arguments = ["--target", "windows-x64", "--seconds", "2"]
    assert machine.dev("run", *arguments).returncode == 0
    host = f"{tree.root}/build/windows-x64/bin/orbcef_host.exe"
    assert machine.calls()[-1] == f"python3 {tree.root}/tools/wine.py {host} --seconds 2"
    done = machine.dev("run", "--target", "macos")
    assert done.returncode == 1 and "run knows the targets" in done.stderr


def test_a_failed_suite_is_a_failed_command(machine):
    machine.dev("build")
    assert machine.dev("test", PYTHON_STATUS="1").returncode != 0


def test_clean(machine, tree):
    machine.dev("build")
    machine.dev("build", "windows-x64")
    engine = tree.write("build/engine/108/linux-x64/libcef.so")
    machine.dev("clean")
    assert engine.exists()
    for target in ("linux-x64", "windows-x64"):
        assert not (tree.root / "build" / target).exists()
    machine.dev("clean", "--all")
    assert not (tree.root / "build").exists()


def test_everything_is_written_below_the_build_folder(machine, tree):
    before = {path.name for path in tree.root.iterdir()}
    machine.dev("build")
    assert {path.name for path in tree.root.iterdir()} - before == {"build", "calls"}


def test_continuous_integration_calls_the_test_command():
    lines = (ROOT / ".ci" / "run").read_text().splitlines()
    assert lines[-1] == "exec ./dev test"
    assert "./dev test" in (ROOT / "README.md").read_text()
