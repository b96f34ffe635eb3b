"""Each rule of who may include whom, by one include that keeps it and one that breaks it."""
import check_layers
import pytest

MODULE = "ChromiumEmbeddedPlugin/ORBCefWrapperMT.m/"


@pytest.fixture
def layers(tree):
    tree.write("ChromiumEmbeddedPlugin/api/orbcefbrowser.h")
    tree.write(MODULE + "LocalInterfaces/ORBCefLog.h")
    tree.write("platform/include/platform/Files.h")
    tree.write("engine/include/include/cef_base.h")
    tree.write("engine/include/include/internal/cef_basic_types.h")
    tree.write("host/src/Window.h")
    return tree


def problems(tree, name, include):
    tree.write(name, f"// A comment.\n#include {include}\n")
    return check_layers.find_problems(tree.root)


@pytest.mark.parametrize(
    "name, include",
    [
        (MODULE + "src/A.cpp", '"ORBCefLog.h"'),
        (MODULE + "src/A.cpp", '"orbcefbrowser.h"'),
        (MODULE + "src/A.cpp", '"platform/Files.h"'),
        (MODULE + "src/A.cpp", '"include/cef_base.h"'),
        (MODULE + "src/A.cpp", '"include/internal/cef_logging_internal.h"'),
        (MODULE + "src/A.cpp", "<string_view>"),
        (MODULE + "src/A.cpp", "<stdint.h>"),
        ("host/src/A.cpp", '"orbcefbrowser.h"'),
        ("host/src/A.cpp", '"Window.h"'),
        ("host/src/A.cpp", "<X11/Xlib.h>"),
        ("platform/x11/A.cpp", '"platform/Files.h"'),
        ("platform/x11/A.cpp", "<X11/Xlib.h>"),
        ("engine/src/A.cpp", '"include/cef_base.h"'),
        ("engine/src/A.cpp", '"include/cef_generated.h"'),
        ("tests/unit/A.cpp", '"ORBCefLog.h"'),
    ],
)
def test_accepts_what_a_layer_may_know(layers, name, include):
    assert problems(layers, name, include) == []


@pytest.mark.parametrize(
    "name, include, text",
    [
        ("host/src/A.cpp", '"ORBCefLog.h"', "host may not know module"),
        ("host/src/A.cpp", '"include/cef_base.h"', "host may not know engine"),
        ("host/src/A.cpp", '"platform/Files.h"', "host may not know platform"),
        ("platform/x11/A.cpp", '"orbcefbrowser.h"', "platform may not know api"),
        ("platform/x11/A.cpp", '"include/cef_base.h"', "platform may not know engine"),
        ("engine/src/A.cpp", '"platform/Files.h"', "engine may not know platform"),
        ("ChromiumEmbeddedPlugin/api/a.h", '"ORBCefLog.h"', "api may not know module"),
        ("ChromiumEmbeddedPlugin/7XOWebHelper.m/src/A.cpp", '"ORBCefLog.h"', "may not know module"),
        (MODULE + "src/A.cpp", '"Window.h"', "module may not know host"),
        (MODULE + "src/A.cpp", '"include/internal/cef_basic_types.h"', "no public header"),
        (MODULE + "src/A.cpp", '"include/base/cef_bind.h"', "no public header"),
        (MODULE + "src/A.cpp", '"nowhere.h"', "header of no part"),
        (MODULE + "src/A.cpp", "<unistd.h>", "no header of the standard library"),
        (MODULE + "src/A.cpp", "<nlohmann/json.hpp>", "no header of the standard library"),
        (MODULE + "src/A.cpp", '"../../../host/src/Window.h"', "climbs"),
    ],
)
def test_refuses_what_a_layer_may_not_know(layers, name, include, text):
    found = problems(layers, name, include)
    assert len(found) == 1
    assert found[0].startswith(f"{name}:2: ")
    assert text in found[0]


def test_ignores_the_build_tree(layers):
    assert problems(layers, "build/host/A.cpp", '"ORBCefLog.h"') == []
