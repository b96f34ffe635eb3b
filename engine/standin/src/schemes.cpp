// The factories that the client registers for its schemes.
#include <map>
#include <mutex>

#include "audit.h"
#include "glue_conversions.h"
#include "runtime.h"
#include "script.h"
#include "url.h"

namespace standin {

namespace {

using Key = std::pair<std::string, std::string>;
using Factories = std::map<Key, Held<CefSchemeHandlerFactory>>;

struct Registry {
  std::mutex lock;
  // Guarded by lock.
  Factories factories;
};

Registry& TheRegistry() {
  static Registry& registry = *new Registry();
  return registry;
}

bool Register(const std::string& scheme, const std::string& host,
              const CefRefPtr<CefSchemeHandlerFactory>& factory) {
  // The engine takes one only while it runs.
  if (!TheApp() || TakeFault("register_scheme")) {
    return false;
  }
  Note("scheme_factory", scheme + "://" + host);
  // What is replaced goes after the lock.
  Factories replaced;
  const std::lock_guard<std::mutex> guard(TheRegistry().lock);
  if (auto old = TheRegistry().factories.extract({scheme, host})) {
    replaced.insert(std::move(old));
  }
  if (factory) {
    TheRegistry().factories.emplace(
        Key(scheme, host),
        Held<CefSchemeHandlerFactory>("client CefSchemeHandlerFactory", factory));
  }
  return true;
}

}  // namespace

CefRefPtr<CefSchemeHandlerFactory> FindFactory(const std::string& url) {
  const Url parsed = ParseUrl(url);
  const std::lock_guard<std::mutex> guard(TheRegistry().lock);
  for (const std::string& host : {parsed.host, std::string()}) {
    const auto found = TheRegistry().factories.find({parsed.scheme, host});
    if (found != TheRegistry().factories.end()) {
      return found->second.get();
    }
  }
  return nullptr;
}

void DropFactories() {
  Factories dropped;
  const std::lock_guard<std::mutex> guard(TheRegistry().lock);
  dropped.swap(TheRegistry().factories);
}

}  // namespace standin

extern "C" int cef_register_scheme_handler_factory(const cef_string_t* scheme_name,
                                                   const cef_string_t* domain_name,
                                                   cef_scheme_handler_factory_t* factory) {
  const CefRefPtr<CefSchemeHandlerFactory> taken = engine_glue::FromC(factory);
  return standin::Register(CefString(scheme_name).ToString(), CefString(domain_name).ToString(),
                           taken)
             ? 1
             : 0;
}

extern "C" int cef_clear_scheme_handler_factories() {
  standin::DropFactories();
  return 1;
}
