#include "resources.h"

#include <array>

#include "audit.h"
#include "include/cef_callback.h"
#include "include/cef_response.h"
#include "requests.h"
#include "script.h"
#include "threads.h"

namespace standin {

namespace {

struct ErrorName {
  cef_errorcode_t error;
  const char* name;
};
constexpr ErrorName kErrorNames[] = {{ERR_ABORTED, "ERR_ABORTED"},
                                     {ERR_FAILED, "ERR_FAILED"},
                                     {ERR_CONNECTION_REFUSED, "ERR_CONNECTION_REFUSED"},
                                     {ERR_EMPTY_RESPONSE, "ERR_EMPTY_RESPONSE"},
                                     {ERR_UNKNOWN_URL_SCHEME, "ERR_UNKNOWN_URL_SCHEME"}};

using HeldHandler = Held<CefResourceHandler>;
using Deliver = std::function<void(Resource)>;

// File thread.
void ReadAll(const HeldHandler& handler, Resource resource, const Deliver& deliver) {
  std::array<char, 4096> block;
  int count = 0;
  while (handler->Read(block.data(), static_cast<int>(block.size()), count, nullptr) && count > 0) {
    resource.body.append(block.data(), static_cast<size_t>(count));
  }
  deliver(std::move(resource));
}

// IO thread.
void ReadHeaders(const HeldHandler& handler, const Deliver& deliver) {
  const CefRefPtr<CefResponse> response = MakeResponse();
  int64 length = 0;
  CefString redirect;
  handler->GetResponseHeaders(response, length, redirect);
  Resource resource;
  resource.status = response->GetStatus();
  resource.mime_type = response->GetMimeType().ToString();
  Note("response", std::to_string(resource.status) + " " + resource.mime_type + " " +
                       std::to_string(length) + " " +
                       response->GetHeaderByName("Cache-Control").ToString());
  Post(TID_FILE_USER_BLOCKING,
       [handler, resource, deliver] { ReadAll(handler, resource, deliver); });
}

}  // namespace

Resource Failure(cef_errorcode_t error) {
  Resource resource;
  resource.error = error;
  for (const ErrorName& known : kErrorNames) {
    if (known.error == error) {
      resource.error_text = known.name;
    }
  }
  return resource;
}

std::string TitleOf(const std::string& html) {
  constexpr char kStart[] = "<title>";
  const size_t start = html.find(kStart);
  const size_t end = html.find("</title>");
  if (start == std::string::npos || end == std::string::npos) {
    return std::string();
  }
  const size_t text = start + sizeof(kStart) - 1;
  return end > text ? html.substr(text, end - text) : std::string();
}

void ReadFromHandler(const CefRefPtr<CefResourceHandler>& handler,
                     const CefRefPtr<CefRequest>& request, const Deliver& deliver) {
  if (!handler) {
    deliver(Failure(ERR_UNKNOWN_URL_SCHEME));
    return;
  }
  const HeldHandler held("client CefResourceHandler", handler);
  Post(TID_FILE_USER_BLOCKING, [held, request, deliver] {
    bool is_handled = false;
    if (!held->Open(request, is_handled, nullptr) || !is_handled) {
      deliver(Failure(ERR_FAILED));
      return;
    }
    Post(TID_IO, [held, deliver] { ReadHeaders(held, deliver); });
  });
}

}  // namespace standin
