"""Checks that the module exports what a host may resolve, and nothing else.

    test_exports.py MODULE [LISTER]

LISTER is the "nm" that reads the module or, for a DLL, the "objdump".
"""

import re
import subprocess
import sys
import unittest
from pathlib import Path

import tap

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "tools"))

from check_symbols import windows_exports  # noqa: E402

_STRING = "std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> >"
_MAP = f"std::map<{_STRING}, {_STRING}, std::less<{_STRING} >, " \
       f"std::allocator<std::pair<{_STRING} const, {_STRING} > > >"
_TWO_TEXTS = "(char const*, char const*)"

ACCESSORS = {
    "OnMainThread": "()",
    "ORBGetEnv": "(char const*)",
    "ORBPutEnv": "(char const*)",
    "ComputeLang": "()",
    "GetOrbisReleaseLevelInfo": "()",
    "BuildCatalogMessage": _TWO_TEXTS,
    "ORBGetTempDirectory": "()",
    "ORBCreateDirectory": f"({_STRING} const&)",
    "IsRecordCapture": "()",
    "IsRecordReplay": "()",
    "GetRecordMode": "()",
    "GetJsonValue": f"({_STRING} const&, {_MAP}&)",
    "GetJSONModuleMap": "()",
    "RemapURL": f"({_STRING} const&)",
    "SaveInPreference": f"(char const*, char const*, {_STRING} const&)",
    "ReadFromPreferences": _TWO_TEXTS,
    "ReadFromSysSettings": _TWO_TEXTS,
    "ReadFromSettings": "(char const*, char const*, int*)",
    "PostTaskOnMainThread": "(void (*)(void*), void*)",
    "ShouldDispatchEventsOnMainThread": "()",
}

EXPECTED = {
    "orbcef_pluginfactory",
    "MERIDEX_SOFTWARE_KIT2_INTERNAL_ORBCefWrapperMT",
    "ORBCefPlugin_Tools::SetORBCefTools(_orbceftools_c*)",
    *(f"ORBCefToolsAccessor::{name}{arguments}" for name, arguments in ACCESSORS.items()),
}


def exported(listing: str) -> set[str]:
    """Demangled names of a listing of ``nm -DC --defined-only``, without their ABI tags."""
    names = set()
    for line in listing.splitlines():
        parts = line.split(maxsplit=2)
        if len(parts) == 3:
            names.add(re.sub(r"\[abi:\w+\]", "", parts[2]).split("@")[0])
    return names


class ModuleExports(unittest.TestCase):
    module = ""
    nm = "nm"

    def test_exactly_the_public_names(self) -> None:
        listing = subprocess.run(
            [self.nm, "-DC", "--defined-only", self.module],
            check=True, capture_output=True, text=True,
        ).stdout  # fmt: skip
        self.assertEqual(sorted(exported(listing)), sorted(EXPECTED))

    def test_all_are_functions(self) -> None:
        listing = subprocess.run(
            [self.nm, "-D", "--defined-only", self.module],
            check=True, capture_output=True, text=True,
        ).stdout  # fmt: skip
        others = [line for line in listing.splitlines() if line.split()[1] != "T"]
        self.assertEqual(others, [])


class DllExports(unittest.TestCase):
    module = ""
    objdump = "objdump"

    def test_exactly_the_public_names(self) -> None:
        headers = subprocess.run(
            [self.objdump, "--private-headers", self.module],
            check=True, capture_output=True, text=True,
        ).stdout  # fmt: skip
        names = subprocess.run(
            ["c++filt"], input="\n".join(windows_exports(headers)),
            check=True, capture_output=True, text=True,
        ).stdout  # fmt: skip
        # In the form that a listing has: an address and a kind come first.
        listing = "".join(f"0 T {name}\n" for name in names.splitlines())
        self.assertEqual(sorted(exported(listing)), sorted(EXPECTED))


class Reading(unittest.TestCase):
    """The test itself: a name too many or too few must show."""

    LISTING = (
        "0000000000001000 T orbcef_pluginfactory\n"
        "0000000000002000 T ORBCefToolsAccessor::RemapURL[abi:cxx11](char const*)\n"
        "0000000000003000 T extra@@VERSION_1\n"
    )

    def test_names_are_read_without_tags_and_versions(self) -> None:
        self.assertEqual(
            exported(self.LISTING),
            {"orbcef_pluginfactory", "ORBCefToolsAccessor::RemapURL(char const*)", "extra"},
        )

    def test_a_listing_with_other_names_is_not_accepted(self) -> None:
        self.assertNotEqual(exported(self.LISTING), EXPECTED)

    def test_the_accessor_has_one_function_for_each_slot(self) -> None:
        self.assertEqual(len(ACCESSORS), 20)


if __name__ == "__main__":
    if len(sys.argv) not in (2, 3):
        sys.exit(__doc__)
    if sys.argv[1].endswith(".dll"):
        DllExports.module = sys.argv[1]
        DllExports.objdump = sys.argv[2] if len(sys.argv) == 3 else "objdump"
        sys.exit(tap.run(DllExports, Reading))
    ModuleExports.module = sys.argv[1]
    ModuleExports.nm = sys.argv[2] if len(sys.argv) == 3 else "nm"
    sys.exit(tap.run(ModuleExports, Reading))
