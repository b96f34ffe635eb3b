// Corrections of wine for the engine: see engine_corrections.c.
#ifndef ORBCEF_TESTS_WINE_ENGINE_CORRECTIONS_H
#define ORBCEF_TESTS_WINE_ENGINE_CORRECTIONS_H

#include <windows.h>

// Puts the corrected functions into the import table of a loaded library or program. Before the
// first of its threads.
void correct_system_calls(HMODULE module);

#endif  // ORBCEF_TESTS_WINE_ENGINE_CORRECTIONS_H
