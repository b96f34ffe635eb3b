// Variables of the test's own process, on every platform under one name.
//
// Called on a test's own thread while no other thread reads the environment.
#ifndef ORBCEF_TESTS_ENVIRONMENT_H
#define ORBCEF_TESTS_ENVIRONMENT_H

// Both are UTF-8; a null value removes the variable.
void SetEnvironment(const char* name, const char* value);

#endif  // ORBCEF_TESTS_ENVIRONMENT_H
