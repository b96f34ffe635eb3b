"""What the natives of a page give back, and which of them exist, with the real engine."""

import os

import orbcef
import pytest
from orbcef import StringsReceived

PLAIN = "xortv://webapps/Test/plain.html"


@pytest.mark.environment(ORBCEF_TEST_SET="caf\u00e9", ORBCEF_TEST_EMPTY="")
def test_a_variable_of_the_environment_is_a_string_even_if_it_is_unset(open_view):
    page = open_view(PLAIN)
    page.view.execute_javascript(
        "xocef.sendString(['set', xocef.getEnv('ORBCEF_TEST_SET'), typeof xocef.getEnv('ORBCEF_TEST_EMPTY'),"
        " xocef.getEnv('ORBCEF_TEST_EMPTY'), typeof xocef.getEnv('ORBCEF_TEST_UNSET'),"
        " xocef.getEnv('ORBCEF_TEST_UNSET')])")
    answer = page.events.wait_for(lambda e: isinstance(e, StringsReceived) and e.strings[0] == "set")
    assert answer.strings[1:] == ("caf\u00e9", "string", "", "string", "")


@pytest.mark.environment(ORBCEF_LOG="", ORBCEF_LOG_PATH="{profile}")
def test_a_read_of_the_environment_is_not_logged(open_view, profile):
    page = open_view(PLAIN)
    assert page.ask("xocef.getEnv('ORBCEF_TEST_UNSET')") == ""
    log = (profile / "cef_client_debug.log").read_text()
    assert "Binding execution: __sendString" in log
    assert "__getEnv" not in log


@pytest.fixture
def with_record_script(profile, monkeypatch):
    """A further installation root, whose record extension leaves a mark in each page."""
    script = profile / "more" / "webapps" / "ORBCefBindings" / "cef_record_extensions.js"
    script.parent.mkdir(parents=True)
    script.write_text("var recordExtension = true;")
    # Before the others, so that an installation's own script does not matter.
    monkeypatch.setenv("ORBInstallPath", f"{profile / 'more'};{os.environ['ORBInstallPath']}")


@pytest.mark.parametrize("mode, found", [(orbcef.RECORD_NONE, "undefined"), (orbcef.RECORD_CAPTURE, "boolean"),
                                         (orbcef.RECORD_REPLAY, "boolean")])
def test_the_record_extension_exists_in_a_record_mode_only(with_record_script, host, mode, found):
    host.tools.record_mode = mode
    page = host.open_view(PLAIN)
    assert page.ask("typeof recordExtension") == found
