#include "ORBCefPreferenceRequest.h"

#include "ORBCefScriptQueue.h"
#include "ORBCefToolsAccessor.h"

namespace {

constexpr std::size_t kSaveValueArguments = 4;
constexpr std::size_t kLoadValueArguments = 3;

constexpr char kStorePrefix[] = "ORBCefStore_";

std::unique_ptr<ORBCefPreferenceRequest> MakeRequest(const CefRefPtr<CefBrowser>& browser,
                                                     const CefRefPtr<CefFrame>& sender,
                                                     const CefRefPtr<CefListValue>& arguments,
                                                     std::size_t least_arguments) {
  if (!browser || !arguments || arguments->GetSize() < least_arguments) {
    return nullptr;
  }
  const CefRefPtr<CefFrame> main_frame = browser->GetMainFrame();
  if (!main_frame) {
    return nullptr;
  }
  auto request = std::make_unique<ORBCefPreferenceRequest>();
  request->frame = sender ? sender : main_frame;
  request->promise_id = arguments->GetInt(0);
  request->repository = arguments->GetString(1).ToString();
  request->key = arguments->GetString(2).ToString();
  return request;
}

// Neither `argument` nor the key in an error text is quoted: the host stores JavaScript, and a text
// that is none leaves the promise open.
void Settle(const ORBCefPreferenceRequest& request, const char* function,
            const std::string& argument, int line) {
  const std::string code = std::string("xocef._internals.") + function + "(" +
                           std::to_string(request.promise_id) + ", " + argument + ");";
  request.frame->ExecuteJavaScript(code, ORBCefScriptQueue::kScriptURL, line);
}

// What the host's main thread runs; it takes over what `Start` let go of.
void RunOnMainThread(void* data) noexcept {
  const std::unique_ptr<ORBCefPreferenceRequest> request(
      static_cast<ORBCefPreferenceRequest*>(data));
  request->Run();
}

}  // namespace

std::unique_ptr<ORBCefPreferenceRequest> ORBCefPreferenceRequest::FromSaveValue(
    const CefRefPtr<CefBrowser>& browser, const CefRefPtr<CefFrame>& sender,
    const CefRefPtr<CefListValue>& arguments) {
  auto request = MakeRequest(browser, sender, arguments, kSaveValueArguments);
  if (request) {
    request->value = arguments->GetString(3).ToString();
  }
  return request;
}

std::unique_ptr<ORBCefPreferenceRequest> ORBCefPreferenceRequest::FromLoadValue(
    const CefRefPtr<CefBrowser>& browser, const CefRefPtr<CefFrame>& sender,
    const CefRefPtr<CefListValue>& arguments) {
  auto request = MakeRequest(browser, sender, arguments, kLoadValueArguments);
  if (request) {
    request->is_read = true;
  }
  return request;
}

void ORBCefPreferenceRequest::Start(std::unique_ptr<ORBCefPreferenceRequest> request) {
  if (!ORBCefToolsAccessor::ShouldDispatchEventsOnMainThread()) {
    request->Run();
    return;
  }
  ORBCefPreferenceRequest* const data = request.release();
  if (!ORBCefToolsAccessor::PostTaskOnMainThread(&RunOnMainThread, data)) {
    // The host never runs a task that it did not take.
    request.reset(data);
  }
}

void ORBCefPreferenceRequest::Run() {
  const std::string store = kStorePrefix + repository;
  std::string error;
  if (is_read) {
    value = ORBCefToolsAccessor::ReadFromPreferences(store.c_str(), key.c_str());
    // An empty text counts as none.
    if (value.empty()) {
      error = "new Error('Failed to read preference " + key + " from repository " + store + "')";
    }
  } else {
    error = ORBCefToolsAccessor::SaveInPreference(store.c_str(), key.c_str(), value);
    value = "undefined";
  }
  if (error.empty()) {
    Settle(*this, "resolvePromise", value, kResolveLine);
  } else {
    Settle(*this, "rejectPromise", error, kRejectLine);
  }
}
