// Checks what the built module promises before its engine starts.
//
//   module_test MODULE factory    the factory's refusals and its output
//   module_test MODULE log        the factory's output with ORBCEF_LOG set
//   module_test MODULE tables     global and HTTP table
//
// Each mode is a process of its own, since the module keeps what it has seen once.

#define _POSIX_C_SOURCE 200809L

#include <unistd.h>

#include "loaded_module.h"

static orbcef_pluginfactory_fn g_factory;

#if defined(_WIN32)
// An empty value removes a variable here, so "set" is some other text.
static void set_variable(const char* name) {
  _putenv_s(name, "1");
}
static void remove_variable(const char* name) {
  _putenv_s(name, "");
}
#else
static void set_variable(const char* name) {
  setenv(name, "", 1);
}
static void remove_variable(const char* name) {
  unsetenv(name);
}
#endif

// ---- Standard output of a call

static char g_output[4096];

// Takes the carriage returns out that a text has where lines end in two characters.
static void unify_lines(char* text) {
  char* end = text;
  for (; *text; ++text) {
    if (*text != '\r') {
      *end++ = *text;
    }
  }
  *end = '\0';
}

// Calls the factory and keeps what it wrote to standard output in `g_output`.
static void* call_factory(uint32_t major, int32_t minor, const char* name) {
  FILE* file = tmpfile();
  fflush(stdout);
  const int saved = dup(STDOUT_FILENO);
  if (!file || saved < 0 || dup2(fileno(file), STDOUT_FILENO) < 0) {
    perror("cannot catch the standard output");
    exit(1);
  }
  void* table = g_factory(major, minor, name);
  fflush(stdout);
  dup2(saved, STDOUT_FILENO);
  close(saved);
  rewind(file);
  const size_t length = fread(g_output, 1, sizeof(g_output) - 1, file);
  g_output[length] = '\0';
  unify_lines(g_output);
  fclose(file);
  return table;
}

static int output_is(const char* expected) {
  if (strcmp(g_output, expected) == 0) {
    return 1;
  }
  fprintf(stderr, "  expected output: %s\n  output: %s\n", expected, g_output);
  return 0;
}

// Cuts the next line out of `*rest`, without its end; null when there is none.
static char* next_line(char** rest) {
  char* line = *rest;
  char* end = strchr(line, '\n');
  if (!end) {
    return NULL;
  }
  *end = '\0';
  *rest = end + 1;
  return line;
}

static int is_version_line(const char* line) {
  static const char kPrefix[] = "[info] orbcefglobal_c(1,0) Cef: ";
  char major[32];
  snprintf(major, sizeof(major), "%d.", ORBCEF_TEST_ENGINE_MAJOR);
  return line && strncmp(line, kPrefix, sizeof(kPrefix) - 1) == 0 &&
         strncmp(line + sizeof(kPrefix) - 1, major, strlen(major)) == 0;
}

static void check_factory(void) {
  check(call_factory(2, 0, ORBCEF_GLOBAL_TABLE) == NULL, "another major is refused");
  check(output_is("[error] acces to CEF plugin refused due to different plugin major version : "
                  "1 vs 2\n"),
        "and said so");
  check(call_factory(0, 0, ORBCEF_GLOBAL_TABLE) == NULL, "major 0 is refused");
  check(output_is("[error] acces to CEF plugin refused due to different plugin major version : "
                  "1 vs 0\n"),
        "and said so");
  check(call_factory(1, 1, ORBCEF_GLOBAL_TABLE) == NULL, "a higher minor is refused");
  check(output_is("[error] acces to CEF plugin refused due to higher plugin minor version : "
                  "0 vs 1\n"),
        "and said so");
  check(call_factory(2, 1, ORBCEF_GLOBAL_TABLE) == NULL, "major comes before minor");
  check(strstr(g_output, "major") && !strstr(g_output, "minor"), "and only major is said");
  check(call_factory(3, 0, "unknown") == NULL && strstr(g_output, "1 vs 3"),
        "the version comes before the name");

  static const char* const kWrong[] = {"",
                                       "orbcefglobal_c ",
                                       " orbcefglobal_c",
                                       "orbcefglobal",
                                       "ORBCEFGLOBAL_C",
                                       "orbcefglobal_c2",
                                       "orbcefbrowser_c"};
  for (size_t i = 0; i < sizeof(kWrong) / sizeof(kWrong[0]); ++i) {
    char text[128];
    snprintf(text, sizeof(text), "the name '%s' is refused without a word", kWrong[i]);
    check(call_factory(1, 0, kWrong[i]) == NULL && output_is(""), text);
  }

  void* table = call_factory(1, 0, ORBCEF_GLOBAL_TABLE);
  check(table != NULL, "the right name and version give the table");
  char* rest = g_output;
  check(is_version_line(next_line(&rest)), "the first success tells the engine's version");
  check(rest[0] == '\0', "and nothing else without ORBCEF_LOG");
  check(call_factory(1, 0, ORBCEF_GLOBAL_TABLE) == table && output_is(""),
        "the second success gives the same table silently");
  check(call_factory(1, -5, ORBCEF_GLOBAL_TABLE) == table && output_is(""),
        "a lower minor is accepted");
  check(call_factory(1, INT32_MIN, ORBCEF_GLOBAL_TABLE) == table, "the lowest minor too");
  check(call_factory(1, INT32_MAX, ORBCEF_GLOBAL_TABLE) == NULL, "the highest minor is refused");
}

static void check_log(void) {
  char expected[64];
  snprintf(expected, sizeof(expected), "CEF_VERSION_MAJOR %d", ORBCEF_TEST_ENGINE_MAJOR);
  check(call_factory(1, 0, ORBCEF_GLOBAL_TABLE) != NULL, "the factory gives the table");
  char* rest = g_output;
  check(is_version_line(next_line(&rest)), "line 1 tells the engine's version");
  const char* line = next_line(&rest);
  check(line && strcmp(line,
                       "[info] Please check if content of code\\CEF\\cef.txt actually "
                       "includes :") == 0,
        "line 2 asks for a check");
  line = next_line(&rest);
  check(line && strcmp(line, expected) == 0, "line 3 is the engine's major version");
  line = next_line(&rest);
  check(line && strcmp(line, "PLUGIN_INSTALLED 1 0 ORBCefWrapperMT") == 0,
        "line 4 is the module's version");
  check(rest[0] == '\0', "there is no line 5");
  check(call_factory(1, 0, ORBCEF_GLOBAL_TABLE) != NULL && output_is(""),
        "the second success prints nothing");
}

static void check_tables(void) {
  orbcefglobal_c* global = get_global(g_factory);
  check_filled("orbcefglobal_c", global, 0, 7);
  check(global->is_available(global) == 1, "is_available is 1");
  check(global->reserved(global) == 0, "reserved is 0");
  give_tools(global);
  global->set_tools(global, NULL);
  give_tools(global);
  global->shutdown_engine(global);
  global->shutdown_engine(global);
  check(1 == global->is_available(global), "shutdown_engine before the start does nothing");
  check(global->create_http(global) == NULL, "there are no HTTP requests yet");
}

int main(int argc, char** argv) {
  if (argc != 3) {
    fprintf(stderr, "usage: %s MODULE factory|log|tables\n", argv[0]);
    return 2;
  }
  static const struct {
    const char* name;
    void (*run)(void);
  } kModes[] = {{"factory", check_factory}, {"log", check_log}, {"tables", check_tables}};
  const char* mode = argv[2];
  // The module reads the variables of an earlier rig or log from its surroundings.
  remove_variable("ORBCEF_LOG");
  remove_variable("QVL_RIG_TMP");
  remove_variable("ORBCEF_RECORD");
  if (strcmp(mode, "log") == 0) {
    set_variable("ORBCEF_LOG");
  }
  g_factory = load_factory(argv[1]);
  for (size_t i = 0; i < sizeof(kModes) / sizeof(kModes[0]); ++i) {
    if (strcmp(mode, kModes[i].name) == 0) {
      kModes[i].run();
      return finish();
    }
  }
  fprintf(stderr, "unknown mode %s\n", mode);
  return 2;
}
