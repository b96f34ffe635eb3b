// The global cookie store. It works on the UI thread; its interface may be called on any.
#include <algorithm>
#include <list>
#include <mutex>

#include "audit.h"
#include "glue_conversions.h"
#include "include/cef_callback.h"
#include "include/cef_cookie.h"
#include "neutral_classes.h"
#include "runtime.h"
#include "script.h"
#include "threads.h"
#include "url.h"

namespace standin {

namespace {

struct Store {
  std::mutex lock;
  // Guarded by lock.
  std::list<CefCookie> cookies;
};

Store& TheStore() {
  static Store& store = *new Store();
  return store;
}

std::string Text(const cef_string_t& field) {
  return CefString(&field).ToString();
}

bool EndsWith(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

// A domain that begins with a dot holds for all hosts below it and for its own.
bool IsFor(const CefCookie& cookie, const Url& url) {
  const std::string domain = Text(cookie.domain);
  const bool is_host = domain == url.host || (domain.size() > 1 && domain.front() == '.' &&
                                              EndsWith("." + url.host, domain));
  const std::string path = Text(cookie.path);
  return is_host && url.path.compare(0, path.size(), path) == 0 &&
         (!cookie.secure || url.scheme == "https");
}

bool Put(const std::string& url, CefCookie cookie) {
  const Url parsed = ParseUrl(url);
  if (!parsed.is_valid || parsed.host.empty()) {
    return false;
  }
  if (cookie.domain.length == 0) {
    CefString domain(&cookie.domain);
    domain = parsed.host;
  }
  if (cookie.path.length == 0) {
    CefString path(&cookie.path);
    path = "/";
  }
  const auto key = [](const CefCookie& c) {
    return Text(c.name) + ";" + Text(c.domain) + ";" + Text(c.path);
  };
  const std::lock_guard<std::mutex> guard(TheStore().lock);
  auto& cookies = TheStore().cookies;
  cookies.remove_if([&](const CefCookie& old) { return key(old) == key(cookie); });
  cookies.push_back(cookie);
  return true;
}

template <class Matches>
int Erase(Matches matches) {
  const std::lock_guard<std::mutex> guard(TheStore().lock);
  auto& cookies = TheStore().cookies;
  const size_t before = cookies.size();
  cookies.remove_if(matches);
  return static_cast<int>(before - cookies.size());
}

template <class Matches>
void Visit(const CefRefPtr<CefCookieVisitor>& visitor, Matches matches) {
  std::list<CefCookie> shown;
  {
    const std::lock_guard<std::mutex> guard(TheStore().lock);
    std::copy_if(TheStore().cookies.begin(), TheStore().cookies.end(), std::back_inserter(shown),
                 matches);
  }
  int count = 0;
  for (const CefCookie& cookie : shown) {
    bool is_deleted = false;
    const bool goes_on =
        visitor->Visit(cookie, count++, static_cast<int>(shown.size()), is_deleted);
    if (is_deleted) {
      Erase([&](const CefCookie& other) {
        return Text(other.name) == Text(cookie.name) && Text(other.domain) == Text(cookie.domain);
      });
    }
    if (!goes_on) {
      break;
    }
  }
}

class StandinCookieManager : public engine_neutral::NeutralCookieManager {
 public:
  bool VisitAllCookies(CefRefPtr<CefCookieVisitor> visitor) override {
    const Held<CefCookieVisitor> held("client CefCookieVisitor", visitor);
    return Post(TID_UI, [held] { Visit(held.get(), [](const CefCookie&) { return true; }); });
  }
  bool VisitUrlCookies(const CefString& url, bool includeHttpOnly,
                       CefRefPtr<CefCookieVisitor> visitor) override {
    const Held<CefCookieVisitor> held("client CefCookieVisitor", visitor);
    const Url parsed = ParseUrl(url.ToString());
    Note("visit_cookies", url.ToString());
    return Post(TID_UI, [held, parsed, includeHttpOnly] {
      Visit(held.get(), [&](const CefCookie& cookie) {
        return IsFor(cookie, parsed) && (includeHttpOnly || !cookie.httponly);
      });
    });
  }
  bool SetCookie(const CefString& url, const CefCookie& cookie,
                 CefRefPtr<CefSetCookieCallback> callback) override {
    const std::string target = url.ToString();
    const CefCookie copy(cookie);
    const Held<CefSetCookieCallback> held("client CefSetCookieCallback", callback);
    return Post(TID_UI, [target, copy, held] {
      const bool is_set = Put(target, copy);
      Note("set_cookie", target + " " + Text(copy.name) + "=" + Text(copy.value) +
                             "; domain=" + Text(copy.domain) + "; path=" + Text(copy.path) +
                             (copy.secure ? "; secure" : "") + (copy.httponly ? "; httponly" : ""));
      if (held) {
        held->OnComplete(is_set);
      }
    });
  }
  bool DeleteCookies(const CefString& url, const CefString& cookie_name,
                     CefRefPtr<CefDeleteCookiesCallback> callback) override {
    const Url parsed = ParseUrl(url.ToString());
    const std::string name = cookie_name.ToString();
    const Held<CefDeleteCookiesCallback> held("client CefDeleteCookiesCallback", callback);
    return Post(TID_UI, [parsed, name, held] {
      const int count = Erase([&](const CefCookie& cookie) {
        return (!parsed.is_valid || IsFor(cookie, parsed)) &&
               (name.empty() || Text(cookie.name) == name);
      });
      if (held) {
        held->OnComplete(count);
      }
    });
  }
  bool FlushStore(CefRefPtr<CefCompletionCallback> callback) override {
    if (TakeFault("flush_store")) {
      return false;
    }
    const Held<CefCompletionCallback> held("client CefCompletionCallback", callback);
    if (TakeFault("flush_store_answer")) {
      return true;
    }
    return Post(TID_UI, [held] {
      Note("flush_store");
      if (held) {
        held->OnComplete();
      }
    });
  }

 private:
  STANDIN_OBJECT(StandinCookieManager);
};

}  // namespace

void DropCookies() {
  std::list<CefCookie> dropped;
  const std::lock_guard<std::mutex> guard(TheStore().lock);
  dropped.swap(TheStore().cookies);
}

}  // namespace standin

extern "C" cef_cookie_manager_t* cef_cookie_manager_get_global_manager(
    cef_completion_callback_t* callback) {
  const CefRefPtr<CefCompletionCallback> taken = engine_glue::FromC(callback);
  // The engine has one only while it runs.
  if (!standin::TheApp() || standin::TakeFault("cookie_manager")) {
    return nullptr;
  }
  if (taken) {
    standin::Post(TID_UI, [taken] { taken->OnComplete(); });
  }
  return engine_glue::ToC(CefRefPtr<CefCookieManager>(new standin::StandinCookieManager()));
}
