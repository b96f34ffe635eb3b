#include "renderer.h"

#include <mutex>

#include "orbcef_standin.h"
#include "script.h"
#include "threads.h"
#include "v8.h"

namespace standin {

namespace {

struct Renderer {
  std::mutex lock;
  // Guarded by lock.
  void (*page)(void* data) = nullptr;
  void* data = nullptr;
  Stage stage;
};

Renderer& TheRenderer() {
  static Renderer& renderer = *new Renderer();
  return renderer;
}

void SetStage(Stage stage) {
  const std::lock_guard<std::mutex> guard(TheRenderer().lock);
  std::swap(TheRenderer().stage, stage);
}

void RunPage() {
  void (*page)(void*) = nullptr;
  void* data = nullptr;
  {
    const std::lock_guard<std::mutex> guard(TheRenderer().lock);
    page = TheRenderer().page;
    data = TheRenderer().data;
  }
  if (page) {
    page(data);
  }
}

void ServePage(const CefRefPtr<CefRenderProcessHandler>& handler) {
  constexpr char kPage[] = "http://page.test/";
  const ViewPtr view = std::make_shared<View>(1, nullptr, false);
  view->url = kPage;
  const CefRefPtr<CefV8Context> context = MakeContext(view);
  handler->OnBrowserCreated(BrowserOf(view), nullptr);
  SetStage({handler, view, context});
  context->Enter();
  handler->OnContextCreated(BrowserOf(view), FrameOf(view), context);
  RunPage();
  RunRendererTasks();
  handler->OnContextReleased(BrowserOf(view), FrameOf(view), context);
  context->Exit();
  SetStage({});
  ReleaseContext(context);
  handler->OnBrowserDestroyed(BrowserOf(view));
}

}  // namespace

void ServeRenderer(const CefRefPtr<CefApp>& app) {
  BecomeRenderer();
  if (const CefRefPtr<CefRenderProcessHandler> handler = app->GetRenderProcessHandler()) {
    handler->OnWebKitInitialized();
    ServePage(handler);
  }
  DropExtensions();
  LeaveRenderer();
}

Stage RendererStage() {
  const std::lock_guard<std::mutex> guard(TheRenderer().lock);
  return TheRenderer().stage;
}

}  // namespace standin

extern "C" void orbcef_standin_page(void (*page)(void* data), void* data) {
  const std::lock_guard<std::mutex> guard(standin::TheRenderer().lock);
  standin::TheRenderer().page = page;
  standin::TheRenderer().data = data;
}
