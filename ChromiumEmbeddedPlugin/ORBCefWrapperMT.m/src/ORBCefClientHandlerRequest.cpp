// The callbacks that decide about navigations, requests and external protocols.
#include "ORBCefClientHandler.h"
#include "ORBCefErrorNames.h"
#include "ORBCefLog.h"
#include "ORBCefNavigationPolicy.h"
#include "ORBCefResourceTables.h"
#include "ORBCefToolsWrapperMT.h"
#include "ORBCefTurnstile.h"
#include "include/cef_parser.h"

namespace {

constexpr char kAcceptLanguage[] = "Accept-Language";

}  // namespace

bool ORBCefClientHandler::OnBeforeBrowse(CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame,
                                         CefRefPtr<CefRequest> request, bool user_gesture,
                                         bool is_redirect) {
  if (!ORBCefToolsWrapperMT::CheckThread(TID_UI)) {
    return true;
  }
  if (!frame || !request) {
    return true;
  }
  const CefString url = request->GetURL();
  // These two refusals are silent, towards the log and the host.
  if (!_settings.local_files_allowed &&
      ORBCefNavigationPolicy::IsRefusedLocalFile(frame->GetURL(), url)) {
    return true;
  }
  if (!_settings.external_navigation_allowed) {
    const CefString home_url = _settings.home_url.Get();
    if (!home_url.empty() &&
        !ORBCefNavigationPolicy::StaysInside(
            url, home_url, ORBCefTurnstile::GetTurnstileUrl(ORBCefTurnstile::kServiceKey))) {
      return true;
    }
  }
  ORBCefLog::BrowserInfo(_browser_id, "Browsing: ", url);
  using ORBCefNavigationPolicy::Transition;
  switch (ORBCefNavigationPolicy::CheckTransition(
      static_cast<uint32_t>(request->GetTransitionType()), _settings.reload_enabled,
      _settings.history_enabled)) {
    case Transition::kAllowed:
      return false;
    case Transition::kReloadRefused:
      ORBCefLog::BrowserWarning(_browser_id, "Navigation cancelled: reload has been disabled.");
      return true;
    case Transition::kHistoryRefused:
      ORBCefLog::BrowserWarning(_browser_id,
                                "Navigation cancelled: previous/next has been disabled.");
      return true;
  }
  return true;
}

void ORBCefClientHandler::OnRenderProcessTerminated(CefRefPtr<CefBrowser> browser,
                                                    TerminationStatus status) {
  if (!ORBCefToolsWrapperMT::CheckThread(TID_UI)) {
    return;
  }
  // Nothing is loaded again and the host is not told: the view stays as it is.
  ORBCefLog::BrowserError(_browser_id,
                          "A render process has been abnormally terminated.\n\tStatus: ",
                          ORBCefErrorNames::TerminationStatusName(static_cast<uint32_t>(status)));
}

ORBCefClientHandler::ReturnValue ORBCefClientHandler::OnBeforeResourceLoad(
    CefRefPtr<CefBrowser> browser, CefRefPtr<CefFrame> frame, CefRefPtr<CefRequest> request,
    CefRefPtr<CefCallback> callback) {
  if (!ORBCefToolsWrapperMT::CheckThread(TID_IO)) {
    return RV_CANCEL;
  }
  if (!request) {
    return RV_CANCEL;
  }
  CefRequest::HeaderMap headers;
  request->GetHeaderMap(headers);
  if (headers.find(kAcceptLanguage) == headers.end()) {
    headers.emplace(kAcceptLanguage, _settings.accept_language.Get());
  }
  request->SetHeaderMap(headers);
  // Asked without the lock: an entry that is just being added may be missed.
  if (!_redirects.IsEmpty()) {
    const CefString url = request->GetURL();
    const CefString target = TakeRedirect(url);
    if (!target.empty()) {
      ORBCefLog::BrowserWarning(_browser_id, "Redirecting request...\n\tFrom: ", url,
                                "\n\tTo: ", target);
      request->SetURL(target);
    }
  }
  return RV_CONTINUE;
}

void ORBCefClientHandler::OnProtocolExecution(CefRefPtr<CefBrowser> browser,
                                              CefRefPtr<CefFrame> frame,
                                              CefRefPtr<CefRequest> request,
                                              bool& allow_os_execution) {
  if (!ORBCefToolsWrapperMT::CheckThread(TID_IO)) {
    return;
  }
  if (!request) {
    return;
  }
  const CefString url = request->GetURL();
  CefURLParts parts;
  const ORBCefResourceTables::UriSchemeMap& schemes = ORBCefResourceTables::UriSchemeTable();
  allow_os_execution =
      CefParseURL(url, parts) && schemes.find(CefString(&parts.scheme)) != schemes.end();
  ORBCefLog::BrowserInfo(_browser_id, "Protocol execution ",
                         allow_os_execution ? "allowed" : "denied", ": ", url);
}
