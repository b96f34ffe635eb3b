// Names the platform that the binding is compiled for: OS_WIN or OS_LINUX.
#ifndef CEF_INCLUDE_BASE_CEF_BUILD_H_
#define CEF_INCLUDE_BASE_CEF_BUILD_H_

#if defined(_WIN32)
#ifndef OS_WIN
#define OS_WIN 1
#endif
#elif defined(__linux__)
#ifndef OS_LINUX
#define OS_LINUX 1
#endif
#else
#error "The engine is bound for Windows and Linux only."
#endif

#endif  // CEF_INCLUDE_BASE_CEF_BUILD_H_
