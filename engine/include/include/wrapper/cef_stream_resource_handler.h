// A resource handler that answers with the bytes of a stream. Used on the engine's IO thread and
// its file threads.
#ifndef CEF_INCLUDE_WRAPPER_CEF_STREAM_RESOURCE_HANDLER_H_
#define CEF_INCLUDE_WRAPPER_CEF_STREAM_RESOURCE_HANDLER_H_

#include "include/cef_resource_handler.h"
#include "include/cef_response.h"
#include "include/cef_stream.h"

class CefStreamResourceHandler : public CefResourceHandler {
 public:
  // Status 200, "OK" and no headers.
  CefStreamResourceHandler(const CefString& mime_type, CefRefPtr<CefStreamReader> stream);
  CefStreamResourceHandler(int status_code, const CefString& status_text,
                           const CefString& mime_type, CefResponse::HeaderMap header_map,
                           CefRefPtr<CefStreamReader> stream);

  bool Open(CefRefPtr<CefRequest> request, bool& handle_request,
            CefRefPtr<CefCallback> callback) override;
  void GetResponseHeaders(CefRefPtr<CefResponse> response, int64& response_length,
                          CefString& redirect_url) override;
  bool Read(void* data_out, int bytes_to_read, int& bytes_read,
            CefRefPtr<CefResourceReadCallback> callback) override;
  void Cancel() override {}

 private:
  const int _status_code;
  const CefString _status_text;
  const CefString _mime_type;
  const CefResponse::HeaderMap _header_map;
  const CefRefPtr<CefStreamReader> _stream;

  IMPLEMENT_REFCOUNTING(CefStreamResourceHandler);
};

#endif  // CEF_INCLUDE_WRAPPER_CEF_STREAM_RESOURCE_HANDLER_H_
