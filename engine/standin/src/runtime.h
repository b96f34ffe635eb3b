// The engine's start and stop, and what it holds of its client between them. Any thread.
#pragma once

#include "include/cef_app.h"
#include "include/cef_browser_process_handler.h"
#include "include/cef_command_line.h"
#include "include/cef_scheme.h"

namespace standin {

// Null while the engine is not up.
CefRefPtr<CefApp> TheApp();
CefRefPtr<CefBrowserProcessHandler> TheBrowserProcessHandler();

// Tells the client of a sub-process that is about to start; nothing is started.
void AnnounceProcess(const std::string& type);

// Lets the application object register its schemes.
void RegisterSchemes(const CefRefPtr<CefApp>& app);

// The factory of a URL's scheme and host; null if there is none.
CefRefPtr<CefSchemeHandlerFactory> FindFactory(const std::string& url);
void DropFactories();

// Forgets all cookies.
void DropCookies();

}  // namespace standin
