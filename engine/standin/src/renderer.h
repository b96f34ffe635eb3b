// A render process: one browser, one frame, one page. The thread that calls is the renderer's.
#pragma once

#include "include/cef_app.h"
#include "include/cef_render_process_handler.h"
#include "views.h"

namespace standin {

// Runs from the start of the script engine to the end of the page, and what was posted meanwhile.
void ServeRenderer(const CefRefPtr<CefApp>& app);

// What stands in the renderer while its page runs; the handler is null otherwise.
struct Stage {
  CefRefPtr<CefRenderProcessHandler> handler;
  ViewPtr view;
  CefRefPtr<CefV8Context> context;
};
Stage RendererStage();

}  // namespace standin
