// Checks the browser table of the built module from a host's side, without an engine browser:
// defaults, setters, refusals, references. The first view starts the engine, so the test needs a
// DISPLAY, and the installation root that holds the helper and the engine.
//
//   browser_table_test MODULE ROOT

#define _POSIX_C_SOURCE 200809L

#include "loaded_module.h"

static atomic_int g_references;

static void add_ref(orbcefbrowserevents_c* self) {
  ++g_references;
}
static void release(orbcefbrowserevents_c* self) {
  --g_references;
}

static int take_is(orbcefstring_c* record, const char* expected) {
  const int same = record && record->length == strlen(expected) &&
                   memcmp(record->data ? record->data : "", expected, record->length) == 0 &&
                   (record->length > 0 || record->data == NULL);
  if (record) {
    record->free(record);
  }
  return same;
}

static orbcefstring_c lend(const char* text) {
  const orbcefstring_c record = {(char*)text, strlen(text), NULL};
  return record;
}

#define CHECK_FLAG(view, name, first)                                       \
  do {                                                                      \
    check(view->get_##name(view) == (first), #name " begins as " #first);   \
    view->set_##name(view, !(first));                                       \
    check(view->get_##name(view) == !(first), #name " can be changed");     \
    view->set_##name(view, (first));                                        \
    check(view->get_##name(view) == (first), #name " can be changed back"); \
  } while (0)

static void check_texts(orbcefbrowser_c* view, const char* module) {
  const orbcefstring_c home = lend("xortv://webapps/Other/index.html");
  const orbcefstring_c error = lend("xortv://webapps/Error/index.html");
  const orbcefstring_c directory = lend(SOME_DIRECTORY);
  const orbcefstring_c relative = lend("relative/dir");
  const orbcefstring_c missing = lend(MISSING_DIRECTORY);
  const orbcefstring_c file = lend(module);
  const orbcefstring_c nothing = lend("");

  check(take_is(view->get_home_url(view), "xortv://webapps/Welcome/index.html"),
        "home_url is that of create_browser");
  view->set_home_url(view, &home);
  check(take_is(view->get_home_url(view), home.data), "home_url can be changed");
  check(take_is(view->get_current_url(view), ""), "current_url begins empty");
  check(take_is(view->get_error_url(view), ""), "error_url begins empty");
  view->set_error_url(view, &error);
  check(take_is(view->get_error_url(view), error.data), "error_url can be changed");

  check(take_is(view->get_download_dir(view), ""), "download_dir begins empty");
  view->set_download_dir(view, &directory);
  check(take_is(view->get_download_dir(view), SOME_DIRECTORY), "download_dir takes a directory");
  view->set_download_dir(view, &relative);
  check(take_is(view->get_download_dir(view), SOME_DIRECTORY),
        "download_dir refuses a relative path");
  view->set_download_dir(view, &missing);
  check(take_is(view->get_download_dir(view), SOME_DIRECTORY),
        "download_dir refuses a missing path");
  view->set_download_dir(view, &file);
  check(take_is(view->get_download_dir(view), SOME_DIRECTORY), "download_dir refuses a file");
  view->set_download_dir(view, &nothing);
  check(take_is(view->get_download_dir(view), ""), "an empty download_dir clears");
  view->set_download_dir(view, &directory);
  view->set_download_dir(view, NULL);
  check(take_is(view->get_download_dir(view), ""), "a null download_dir clears");
}

static void check_without_browser(orbcefbrowser_c* view) {
  check(view->can_go_back(view) == 0, "no way back without a browser");
  check(view->can_go_forward(view) == 0, "no way forward without a browser");
  check(view->get_window(view) == NULL, "no window without a browser");
  void (*const quiet[])(orbcefbrowser_c*) = {view->go_back,
                                             view->go_forward,
                                             view->reload,
                                             view->stop_load,
                                             view->copy,
                                             view->cut,
                                             view->paste,
                                             view->delete_selection,
                                             view->undo,
                                             view->redo,
                                             view->select_all,
                                             view->show_dev_tools,
                                             view->close_dev_tools,
                                             view->notify_move_or_resize};
  for (size_t i = 0; i < sizeof(quiet) / sizeof(quiet[0]); ++i) {
    quiet[i](view);
  }
  view->load_url(view, NULL);
  view->set_bounds(view, NULL);
  view->create(view, NULL, NULL, NULL);
  view->set_zoom_level(view, 1.0);
  view->change_zoom_level(view, 1.0);
  check(view->get_window(view) == NULL, "the quiet slots did nothing");
}

static void check_browser(orbcefglobal_c* global, const char* module) {
  static orbcefbrowserevents_c events = {.add_ref = add_ref, .release = release};
  give_tools(global);
  const orbcefstring_c home = lend("xortv://webapps/Welcome/index.html");
  orbcefbrowser_c* view = global->create_browser(global, &events, NULL, &home);
  check(view != NULL, "create_browser gives a view");
  if (!view) {
    return;
  }
  check(g_references == 1, "the module took one reference of the events");
  check(g_tool_calls > 0, "the module asked for the main thread");
  check_filled("orbcefbrowser_c", view, 0, 59);
  CHECK_FLAG(view, flag0, 0);
  CHECK_FLAG(view, flag1, 1);
  CHECK_FLAG(view, javascript_enabled, 1);
  CHECK_FLAG(view, flag3, 1);
  CHECK_FLAG(view, history_enabled, 1);
  CHECK_FLAG(view, reload_enabled, 1);
  CHECK_FLAG(view, zoom_by_page_enabled, 1);
  CHECK_FLAG(view, forward_console, 0);
  CHECK_FLAG(view, local_files_allowed, 0);
  CHECK_FLAG(view, external_navigation_allowed, 1);
  CHECK_FLAG(view, js_dialogs_allowed, 0);
  check(view->get_popup_mode(view) == ORBCEF_POPUP_ALLOW, "popups are allowed at first");
  view->set_popup_mode(view, ORBCEF_POPUP_EXTERNAL);
  check(view->get_popup_mode(view) == ORBCEF_POPUP_EXTERNAL, "popup_mode can be changed");
  check_texts(view, module);
  check_without_browser(view);

  orbcefbrowser_c* second = global->create_browser(global, NULL, NULL, NULL);
  check(second != NULL && second != view, "a second view has a table of its own");
  if (second) {
    check(take_is(second->get_home_url(second), ""), "a null home URL is an empty one");
    second->close(second, 1);
    second->release(second);
  }
  view->add_ref(view);
  view->release(view);
  check(view->get_popup_mode(view) == ORBCEF_POPUP_EXTERNAL, "a view lives to its last release");
  view->close(view, 1);
  check(g_references == 0, "close gives the events back");
  view->release(view);
  global->shutdown_engine(global);
  check(g_references == 0, "and nobody gives them back twice");
}

int main(int argc, char** argv) {
  char folder[4096];
  if (argc != 3) {
    fprintf(stderr, "usage: %s MODULE ROOT\n", argv[0]);
    return 2;
  }
  put_variable("ORBInstallPath", argv[2]);
  // Without a directory for its cache the engine leaves files wherever the process then stands.
  put_variable("ORBTemp", current_directory(folder, sizeof(folder)));
  check_browser(get_global(load_factory(argv[1])), argv[1]);
  return finish();
}
