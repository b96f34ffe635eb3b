/* How a test steers the stand-in for the engine, and what it can ask it afterwards. Plain C,
 * resolved from the loaded library by name. All functions may be called on any thread, before the
 * engine is started as well.
 *
 * Faults. orbcef_standin_fail(operation, times): the operation fails that often, -1 for always.
 *   initialize            the engine does not start
 *   create_browser        there is no browser
 *   command_line          no command line is made
 *   stream                no stream is opened
 *   xml_reader            no XML reader is made
 *   parse_url             no URL is understood
 *   cookie_manager        there is no cookie manager
 *   flush_store           the cookie manager refuses to flush
 *   flush_store_answer    it accepts and never answers
 *   register_scheme       no scheme factory is taken
 *   post_task             no task is taken
 *   process_message       no message is made
 *   message_arguments     a message has no arguments
 *   host, main_frame, focused_frame   a browser has none
 *   url_request           no request is made
 *   v8_context            there is no current context
 *   v8_value              no value is made
 *   eval                  a script fails
 *
 * Events. The stand-in writes down what it is asked and what it answers, each under a name, in
 * order: orbcef_standin_count, orbcef_standin_text, orbcef_standin_wait.
 */
#ifndef ORBCEF_STANDIN_H
#define ORBCEF_STANDIN_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* In place of an engine thread: the thread of the caller, and one that the engine does not know. */
#define ORBCEF_STANDIN_CALLER (-1)
#define ORBCEF_STANDIN_STRANGER (-2)

/* One callback of the client, played as the engine would call it. */
typedef struct orbcef_standin_call {
  /* Class and method, "CefLifeSpanHandler::OnAfterCreated". */
  const char* name;
  /* A cef_thread_id_t, or one of the two above. */
  int32_t thread;
  /* Bit n: the callback's object argument n, counted from 0, is null. */
  uint32_t nulls;
  /* The identifier of the browser; 0 is the oldest living one. */
  int32_t browser;
  /* The arguments that are texts and numbers, in their order. Null is the empty text. */
  const char* texts[4];
  int32_t numbers[4];
  /* The fields of a process message: "bool:1", "int:3", "double:0.5", "string:text", "null:",
   * "strings:a|b". */
  const char* const* fields;
  int32_t field_count;
  /* What the callback answered: its result, arguments that it changed, and what it told a callback
   * object of the engine or wrote into a text. */
  int32_t result;
  int32_t outs[4];
  char text[512];
} orbcef_standin_call;

/* Keys and menus number their arguments so:
 *   CefKeyboardHandler::*                        type of the event, key code, modifiers
 *   CefContextMenuHandler::OnBeforeContextMenu   type flags, flags of the edit state
 *   CefContextMenuHandler::OnContextMenuCommand  the same, then command, flags of the event
 * The first text of a menu is the link. A model answers with its items, "--" for a separator and
 * "(26504)" for an item that is disabled; it begins as "131". */

/* Plays a callback and returns when it has returned. 0 without such a callback, browser or handler.
 */
typedef int32_t orbcef_standin_play_fn(orbcef_standin_call* call);
int32_t orbcef_standin_play(orbcef_standin_call* call);

typedef void orbcef_standin_fail_fn(const char* operation, int32_t times);
void orbcef_standin_fail(const char* operation, int32_t times);

/* How often an event has happened. */
typedef int32_t orbcef_standin_count_fn(const char* event);
int32_t orbcef_standin_count(const char* event);

/* The text of its occurrence number `index` from 0. The length; -1 if there is none. */
typedef int32_t orbcef_standin_text_fn(const char* event, int32_t index, char* buffer,
                                       int32_t size);
int32_t orbcef_standin_text(const char* event, int32_t index, char* buffer, int32_t size);

/* Waits until it has happened `count` times. 0 if the limit passed before. */
typedef int32_t orbcef_standin_wait_fn(const char* event, int32_t count, int32_t milliseconds);
int32_t orbcef_standin_wait(const char* event, int32_t count, int32_t milliseconds);

/* Keeps an engine thread from taking its next task, and lets it go on. */
typedef void orbcef_standin_hold_fn(int32_t thread);
void orbcef_standin_hold(int32_t thread);
typedef void orbcef_standin_resume_fn(int32_t thread);
void orbcef_standin_resume(int32_t thread);

/* Waits until the thread has run what it was given before. 0 if the limit passed before. */
typedef int32_t orbcef_standin_settle_fn(int32_t thread, int32_t milliseconds);
int32_t orbcef_standin_settle(int32_t thread, int32_t milliseconds);

/* How many objects of a class are alive, and references that the stand-in holds on its client's
 * ("client CefTask"); of all classes for null. */
typedef int32_t orbcef_standin_living_fn(const char* class_name);
int32_t orbcef_standin_living(const char* class_name);

/* What a page of the renderer does between the making and the release of its context. */
typedef void orbcef_standin_page_fn(void (*page)(void* data), void* data);
void orbcef_standin_page(void (*page)(void* data), void* data);

/* Calls a native function of a registered extension, as a script of the page would. The arguments
 * are written like a message's fields; "function:name" is a function, whose calls go to the event
 * "function", and "object:name=field;name=field" an object. The outcome goes to the event "native":
 * "name = result" or "name ! exception". 0 without such an extension. */
typedef int32_t orbcef_standin_native_fn(const char* name, const char* const* arguments,
                                         int32_t count);
int32_t orbcef_standin_native(const char* name, const char* const* arguments, int32_t count);

#ifdef __cplusplus
}
#endif

#endif
