// Generated from the interface facts. Do not edit.
#ifndef CEF_INCLUDE_CEF_VERSION_H_
#define CEF_INCLUDE_CEF_VERSION_H_

#include "include/base/cef_build.h"

#define CEF_VERSION "108.4.13+ga98cd4c+chromium-108.0.5359.125"
#define CEF_VERSION_MAJOR 108
#define CEF_VERSION_MINOR 4
#define CEF_VERSION_PATCH 13
#define CEF_COMMIT_NUMBER 2702
#define CHROME_VERSION_MAJOR 108
#define CHROME_VERSION_MINOR 0
#define CHROME_VERSION_BUILD 5359
#define CHROME_VERSION_PATCH 125

#define CEF_API_HASH_UNIVERSAL "e92cde673e73851d8841e2f3c4f38bcd0f6ed2bb"
#if defined(OS_WIN)
#define CEF_API_HASH_PLATFORM "162bfdae56cbfd7f76fd4178be019f0dba512c40"
#else
#define CEF_API_HASH_PLATFORM "9682b2251f9973ee9eee0940eb9c773e522c2975"
#endif

#endif  // CEF_INCLUDE_CEF_VERSION_H_
