#include "ORBCefLanguageCookie.h"

#include <algorithm>
#include <stdexcept>
#include <utility>
#include <vector>

#include "ORBCefToolsWrapperMT.h"
#include "include/cef_callback.h"
#include "include/cef_parser.h"

namespace {

// Single characters of the prefix are compared, not the word: "web.sub.test" loses four
// characters as well. That is the rule as it stands.
constexpr char kPrefix[] = "www.";
constexpr size_t kPrefixLength = sizeof(kPrefix) - 1;

bool IsNumber(const std::string& text) {
  return !text.empty() &&
         std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// The engine serves cookies on its UI thread or its IO thread, depending on its version.
bool IsCookieThread() {
  return ORBCefToolsWrapperMT::CheckThread(TID_IO) || ORBCefToolsWrapperMT::CheckThread(TID_UI);
}

class LanguageCookieVisitor : public CefCookieVisitor {
 public:
  LanguageCookieVisitor(const CefString& url, const CefString& language,
                        std::function<CefRefPtr<CefCookieManager>()> manager)
      : _url(url), _language(language), _manager(std::move(manager)) {}

  bool Visit(const CefCookie& cookie, int count, int total, bool& deleteCookie) override {
    if (!IsCookieThread()) {
      return false;
    }
    if (CefString(&cookie.name) == CefString(ORBCefLanguageCookie::kName)) {
      _found = true;
      return false;
    }
    return true;
  }

 private:
  // The engine drops the visitor at the end of the visit, also if there was no cookie to show.
  ~LanguageCookieVisitor() override {
    if (!_found && IsCookieThread()) {
      SetCookie();
    }
  }

  void SetCookie() {
    const CefRefPtr<CefCookieManager> manager = _manager();
    if (!manager) {
      return;
    }
    std::string domain;
    try {
      domain = ORBCefLanguageCookie::CookieDomainOf(_url.ToString());
    } catch (const std::out_of_range&) {
      return;
    }
    CefCookie cookie;
    CefString(&cookie.name) = ORBCefLanguageCookie::kName;
    CefString(&cookie.value) = ORBCefToolsWrapperMT::BaseLanguage(_language.ToString());
    CefString(&cookie.domain) = domain;
    CefString(&cookie.path) = "/";
    manager->SetCookie(_url, cookie, nullptr);
  }

  const CefString _url;
  const CefString _language;
  const std::function<CefRefPtr<CefCookieManager>()> _manager;
  bool _found = false;

  IMPLEMENT_REFCOUNTING(LanguageCookieVisitor);
};

CefRefPtr<CefCookieManager> GlobalManager() {
  return CefCookieManager::GetGlobalManager(nullptr);
}

}  // namespace

namespace ORBCefLanguageCookie {

std::string CookieDomainOf(const std::string& url) {
  CefURLParts parts;
  if (url.empty() || !CefParseURL(url, parts)) {
    return std::string();
  }
  std::string host = CefString(&parts.host).ToString();
  if (!host.empty() &&
      std::find(kPrefix, kPrefix + kPrefixLength, host.front()) != kPrefix + kPrefixLength) {
    host = host.substr(kPrefixLength);
  }
  const std::vector<std::string> labels = ORBCefToolsWrapperMT::SplitString(host, '.');
  if (labels.size() < 3) {
    return "." + host;
  }
  if (std::all_of(labels.begin(), labels.end(), IsNumber)) {
    return std::string();
  }
  return host.substr(labels.front().size());
}

CefRefPtr<CefCookieVisitor> CreateVisitor(const CefString& url, const CefString& language,
                                          std::function<CefRefPtr<CefCookieManager>()> manager) {
  return new LanguageCookieVisitor(url, language, std::move(manager));
}

void Start(const CefString& url, const CefString& language) {
  const CefRefPtr<CefCookieManager> manager = GlobalManager();
  if (!manager || url.empty()) {
    return;
  }
  // Cookies that scripts cannot see count too.
  manager->VisitUrlCookies(url, true, CreateVisitor(url, language, GlobalManager));
}

}  // namespace ORBCefLanguageCookie
