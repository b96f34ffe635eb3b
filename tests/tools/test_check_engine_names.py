"""The module may use what both engine versions have in public, and nothing else."""
import check_engine_names
import pytest

SOURCE = "ChromiumEmbeddedPlugin/ORBCefWrapperMT.m/src/A.cpp"


def problems(tree, text):
    tree.write(SOURCE, text)
    return check_engine_names.find_problems(tree.root)


@pytest.mark.parametrize(
    "text",
    [
        "CefRefPtr<CefBrowser> browser;",
        "CefString(&settings.locale);",
        "int size = cef_string_utf16_cmp(a, b);",
        "auto flags = CEF_SCHEME_OPTION_STANDARD;",
        "int major = CEF_VERSION_MAJOR;",
        "cef_enable_highdpi_support();",
        "// CefNothing in a comment",
        'const char* text = "cef_client_debug.log";',
        "ORBCefLog::Info(1);",
    ],
)
def test_accepts_public_names(tree, text):
    assert problems(tree, text) == []


@pytest.mark.parametrize(
    "text, name",
    [
        ("CefBrowserForeign* browser;", "CefBrowserForeign"),
        ("CefRefCounter count;", "CefRefCounter"),
        ("cef_internal_call();", "cef_internal_call"),
        # Only one of the two versions has these.
        ("CefPreferenceManager* manager;", "CefPreferenceManager"),
        ("cef_basetime_t time;", "cef_basetime_t"),
        ("CefEnableHighDPISupport();", "CefEnableHighDPISupport"),
        ('Call("a \\" b", CefNothing());', "CefNothing"),
    ],
)
def test_refuses_other_names_and_tells_the_place(tree, text, name):
    assert problems(tree, "\n" + text) == [f"{SOURCE}:2: {name} is no public name of both engine versions"]
