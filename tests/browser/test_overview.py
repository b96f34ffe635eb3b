"""The whole road, from a host that opens a page to a page that has its answers, in the order in which it happens."""

import os

import orbcef
import targets
from orbcef import AddressChanged, LoadingStateChanged, StateChanged, StringsReceived, V8Context
from processes import children

PAGE = "xortv://webapps/Test/road.html"


def test_the_road_of_a_string_and_of_a_value(host):
    host.tools.dispatch_on_main_thread = True
    host.tools.preferences["ORBCefStore_Road", "colour"] = '"blue"'

    # 1. The host makes a view for an address of the installation, gives it a script at once, and opens it.
    events = orbcef.Events(host.main)
    view = host.module.create_view(events, None, PAGE)
    view.execute_javascript("xocef.receive(['queued'])")
    window = orbcef.Window(host.main, 400, 300)
    view.create(window.handle, (0, 0, 400, 300), PAGE)
    events.wait_for_kind(StateChanged, state=orbcef.STATE_CREATED)

    # 2. The engine starts a render process, which is the helper with the module and the script files in it.
    events.wait_for_kind(V8Context, created=True)
    helper = str(targets.ROOT / "code" / "bin" / targets.HELPER_FILE)
    renderers = [command for _, command in children(os.getpid()) if "--type=renderer" in command]
    assert renderers and all(command.lstrip('"').startswith(helper) for command in renderers)

    # 3. The page came from a file of the installation, as the type of its name; its address is the host's to show.
    events.wait_for_kind(AddressChanged, url=PAGE)
    events.wait_for_kind(StringsReceived, strings=("type", "text/html"))

    # 4. Its scripts see xocef before its document is ready. The queued script comes at the end of the load.
    events.wait_for_kind(LoadingStateChanged, is_loading=False, url=PAGE)
    events.wait_for_kind(StringsReceived, strings=("heard", "queued"))
    places = [events.everything().index(event) for event in (
        StringsReceived(strings=("first script", "xocef is an object")),
        StateChanged(state=orbcef.STATE_DOM_READY),
        StringsReceived(strings=("heard", "queued")),
    )]
    assert places == sorted(places)

    # 5. What the page sends is heard whole, on the engine's thread.
    question = events.wait_for_kind(StringsReceived, strings=("question", "How are you?", "\u20ac\u2028\0"))
    assert question.thread == events.everything()[0].thread

    # 6. The host answers by a script, and the page says what it heard.
    view.execute_javascript("xocef.receive(['Well, thank you'])")
    events.wait_for_kind(StringsReceived, strings=("heard", "Well, thank you"))

    # 7. A value of the host's store comes back through the page's promise, and another is left there.
    events.wait_for_kind(StringsReceived, strings=("colour", "blue"))
    events.wait_for_kind(StringsReceived, strings=("saved", "undefined"))
    assert host.tools.preferences["ORBCefStore_Road", "shape"] == '["round"]'

    # 8. The host closes the view and gives it back; the module gives back the host's table.
    child = view.window
    view.close(True)
    view.release()
    assert host.main.run_until(lambda: window.lets_go_of(child))
    window.close()
    events.drop()
    assert host.main.run_until(lambda: events.references == 0)
