// The engine's waits on wine: see engine_waits.c.
#ifndef ORBCEF_TESTS_WINE_ENGINE_WAITS_H
#define ORBCEF_TESTS_WINE_ENGINE_WAITS_H

#include <windows.h>

// Puts the correct waits into the import table of a loaded library. Before the first of its
// threads.
void correct_waits(HMODULE module);

#endif  // ORBCEF_TESTS_WINE_ENGINE_WAITS_H
