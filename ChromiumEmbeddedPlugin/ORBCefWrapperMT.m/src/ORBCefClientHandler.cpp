#include "ORBCefClientHandler.h"

#include <mutex>
#include <utility>

#include "ORBCefClientRegistry.h"
#include "ORBCefLanguageCookie.h"
#include "ORBCefLivingBrowsers.h"
#include "ORBCefLog.h"
#include "ORBCefMessageDispatcher.h"
#include "ORBCefResourceTables.h"
#include "ORBCefSessionCookie.h"
#include "ORBCefTask.h"
#include "ORBCefToolsWrapperMT.h"
#include "ORBCefTurnstile.h"
#include "include/cef_parser.h"
#include "platform/Files.h"

namespace {

using Guard = std::lock_guard<platform::Lock>;

// Asked once in a process: a test application gets no ticket and no service URL.
bool IsTestApplication() {
  static const bool is_set = ORBCefToolsAccessor::ORBGetEnv("ORBCEF_TESTAPP") != nullptr;
  return is_set;
}

CefString Canonical(const CefString& url) {
  return ORBCefToolsWrapperMT::CanonicalURL(url.ToString());
}

std::string LookUpTurnstileURL(const ORBCefAuthDelegate& delegate) {
  if (IsTestApplication()) {
    return std::string();
  }
  return ORBCefToolsWrapperMT::CanonicalURL(
      delegate.IsAuthenticated() ? delegate.TurnstileURL()
                                 : ORBCefTurnstile::GetTurnstileUrl(ORBCefTurnstile::kServiceKey));
}

}  // namespace

ORBCefClientHandler::ORBCefClientHandler(orbcefbrowserevents_c* events,
                                         orbcefbrowserhost_c* auth_delegate,
                                         const CefString& start_url)
    : _callbacks(events), _auth_delegate(auth_delegate) {
  ORBCefResourceTables::LoadUriSchemes();
  CefURLParts parts;
  if (!start_url.empty() && CefParseURL(start_url, parts)) {
    _settings.home_url.Set(CefString(&parts.spec));
    const std::string scheme = CefString(&parts.scheme).ToString();
    if ((scheme == "http" || scheme == "https") && ORBCefToolsAccessor::OnMainThread() &&
        !IsTestApplication()) {
      AskForTicket();
    }
  }
  // Last, so that a view without a delegate never has a login pending, whatever service is
  // configured: that is meant.
  _turnstile_url = LookUpTurnstileURL(_auth_delegate);
}

void ORBCefClientHandler::AskForTicket() {
  const CefString home_url = _settings.home_url.Get();
  if (_auth_delegate.IsAuthenticated() && !home_url.empty()) {
    const CefString ticket_url = _auth_delegate.TransientTicketURL(home_url);
    if (ticket_url.empty()) {
      ORBCefLog::BrowserError(
          _browser_id, "LEDGERWebAuthDelegate failed to get transient ticket for URL: ", home_url);
      _auth_delegate.Reset();
      _turnstile_url = LookUpTurnstileURL(_auth_delegate);
    } else {
      AddRedirect(home_url, ticket_url);
    }
  }
  if (_auth_delegate.IsAuthenticated()) {
    return;
  }
  if (_turnstile_url.empty()) {
    ORBCefLog::BrowserInfo(_browser_id, "The current session is not authenticated with a CAS.");
  } else {
    _login_pending = true;
  }
}

ORBCefClientHandler::~ORBCefClientHandler() {
  const Guard guard(_lock);
  ORBCefLog::BrowserInfo(_browser_id,
                         "Browser shutdown is done. Now destroying the client handler.");
  _browser = nullptr;
  _auth_delegate.Reset();
  _callbacks.Reset();
}

void ORBCefClientHandler::SetURL(const CefString& url) {
  const Guard guard(_lock);
  _settings.home_url.Set(Canonical(url));
}

void ORBCefClientHandler::SetAcceptLanguage(const CefString& language) {
  const Guard guard(_lock);
  _settings.accept_language.Set(language);
}

void ORBCefClientHandler::SetDownloadDirectory(const CefString& path) {
  const Guard guard(_lock);
  std::string directory = path.ToString();
  ORBCefToolsWrapperMT::ToNativeSeparators(directory);
  if (!directory.empty() && directory.back() != platform::kSeparator) {
    directory.push_back(platform::kSeparator);
  }
  _settings.download_dir.Set(directory);
}

void ORBCefClientHandler::SetParentWindow(platform::WindowHandle window) {
  const Guard guard(_lock);
  _parent_window = window;
}

void ORBCefClientHandler::SetURLObserver(URLObserver observer) {
  // The old one goes after the lock: it may hold the last reference of its owner.
  URLObserver old;
  const Guard guard(_lock);
  old = std::exchange(_url_observer, std::move(observer));
}

void ORBCefClientHandler::SetOSRSize(int32_t width, int32_t height) {
  _osr_width = width;
  _osr_height = height;
}

platform::WindowHandle ORBCefClientHandler::GetParentWindow() const {
  const Guard guard(_lock);
  return _parent_window;
}

platform::WindowHandle ORBCefClientHandler::GetWindow() const {
  const Guard guard(_lock);
  return _window;
}

CefRefPtr<CefBrowser> ORBCefClientHandler::GetBrowser() const {
  const Guard guard(_lock);
  return _browser;
}

std::string ORBCefClientHandler::GetTurnstileURL() const {
  const Guard guard(_lock);
  return _turnstile_url;
}

void ORBCefClientHandler::AddRedirect(const CefString& source, const CefString& target) {
  const Guard guard(_lock);
  _redirects.Add(source, target);
}

CefString ORBCefClientHandler::TakeRedirect(const CefString& url) {
  const Guard guard(_lock);
  return _redirects.Take(url);
}

void ORBCefClientHandler::ExecuteJavaScript(const CefString& code, const CefString& script_url,
                                            int start_line) {
  const Guard guard(_lock);
  _script_queue.Execute(_browser, _browser_id, code, script_url, start_line);
}

void ORBCefClientHandler::FlushJavaScriptQueue() {
  const Guard guard(_lock);
  _script_queue.Flush(_browser, _browser_id);
}

void ORBCefClientHandler::Detach() {
  if (!ORBCefToolsAccessor::OnMainThread()) {
    ORBCefLog::BrowserError(_browser_id, "This method should be called on the main thread");
    return;
  }
  URLObserver observer;
  const Guard guard(_lock);
  _detached = true;
  observer = std::exchange(_url_observer, nullptr);
  _window = 0;
  _parent_window = 0;
  _auth_delegate.Reset();
  _callbacks.Reset();
}

std::future<ReplayDelegateResult> ORBCefClientHandler::ReplayInteraction(
    const CefString& interaction) {
  ORBCefLog::BrowserError(_browser_id, "REPLAY - Web interactions can't be replayed yet.");
  std::promise<ReplayDelegateResult> promise;
  promise.set_value(
      {ReplayDelegateResult::kBrowserSideFailure, "No valid instance for ORBCefReplayDelegate."});
  return promise.get_future();
}

bool ORBCefClientHandler::OnProcessMessageReceived(CefRefPtr<CefBrowser> browser,
                                                   CefRefPtr<CefFrame> frame,
                                                   CefProcessId source_process,
                                                   CefRefPtr<CefProcessMessage> message) {
  if (!ORBCefToolsWrapperMT::CheckThread(TID_UI)) {
    return false;
  }
  if (!browser || !message || source_process != PID_RENDERER) {
    return false;
  }
  std::unique_ptr<ORBCefPreferenceRequest> preference_request;
  if (!ActOnMessage(browser, frame, message, preference_request)) {
    return false;
  }
  // The host's store is asked without the lock: it may wait for a thread that wants it.
  if (preference_request) {
    ORBCefPreferenceRequest::Start(std::move(preference_request));
  }
  return true;
}

bool ORBCefClientHandler::ActOnMessage(
    const CefRefPtr<CefBrowser>& browser, const CefRefPtr<CefFrame>& frame,
    const CefRefPtr<CefProcessMessage>& message,
    std::unique_ptr<ORBCefPreferenceRequest>& preference_request) {
  const Guard guard(_lock);
  // A view that its host has left ignores its pages.
  if (!_callbacks.IsSet()) {
    return false;
  }
  return ORBCefMessageDispatcher::Dispatch(
      message->GetName(),
      {browser, frame, message->GetArgumentList(), _callbacks, _settings, preference_request});
}

void ORBCefClientHandler::OnAfterCreated(CefRefPtr<CefBrowser> browser) {
  if (!ORBCefToolsWrapperMT::CheckThread(TID_UI)) {
    return;
  }
  if (!browser) {
    return;
  }
  ORBCefLivingBrowsers::Instance().Add(browser);
  const Guard guard(_lock);
  if (!_browser) {
    _browser = browser;
    _browser_id = browser->GetIdentifier();
    const CefRefPtr<CefBrowserHost> host = browser->GetHost();
    _window = host ? platform::ToWindowHandle(host->GetWindowHandle()) : 0;
  }
  ORBCefClientRegistry::Instance().Add(_browser_id, this);
  if (_login_pending.exchange(false)) {
    _login_result = ORBCefSessionCookie::InstallLauncherCookie(_turnstile_url);
  }
  ORBCefLanguageCookie::Start(_settings.home_url.Get(), _settings.accept_language.Get());
  _callbacks.OnStateChanged(ORBCefBrowserEvents::kCreated);
  ORBCefLog::BrowserInfo(_browser_id, "Created.");
  CloseIfForsaken(browser);
}

void ORBCefClientHandler::CloseIfForsaken(const CefRefPtr<CefBrowser>& browser) {
  // The host closed the view while its browser was being made, so nobody else can close it.
  const CefRefPtr<CefBrowserHost> host = _detached ? browser->GetHost() : nullptr;
  if (!host) {
    return;
  }
  // Later, because the engine is not yet through with making it.
  if (!ORBCefPost(TID_UI, [host] { host->CloseBrowser(true); })) {
    host->CloseBrowser(true);
  }
}

bool ORBCefClientHandler::DoClose(CefRefPtr<CefBrowser> browser) {
  if (!ORBCefToolsWrapperMT::CheckThread(TID_UI)) {
    return true;
  }
  ORBCefLog::BrowserInfo(_browser_id, "Destruction requested.");
  ORBCefClientRegistry::Instance().Remove(_browser_id);
  if (browser && browser->IsLoading()) {
    browser->StopLoad();
  }
  _closing = true;
  return false;
}

void ORBCefClientHandler::OnBeforeClose(CefRefPtr<CefBrowser> browser) {
  if (!ORBCefToolsWrapperMT::CheckThread(TID_UI)) {
    return;
  }
  ORBCefLog::BrowserInfo(_browser_id, "Closing.");
  // A browser whose parent window the host destroyed ends without a DoClose.
  ORBCefClientRegistry::Instance().Remove(_browser_id);
  if (browser) {
    ORBCefLivingBrowsers::Instance().Remove(browser);
  }
  // Both go after the lock: they may hold the last reference of their owners.
  URLObserver observer;
  CefRefPtr<CefBrowser> closed;
  const Guard guard(_lock);
  observer = std::exchange(_url_observer, nullptr);
  closed = std::exchange(_browser, nullptr);
}
