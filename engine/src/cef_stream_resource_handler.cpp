#include "include/wrapper/cef_stream_resource_handler.h"

#include "include/cef_callback.h"
#include "include/cef_request.h"

CefStreamResourceHandler::CefStreamResourceHandler(const CefString& mime_type,
                                                   CefRefPtr<CefStreamReader> stream)
    : CefStreamResourceHandler(200, "OK", mime_type, CefResponse::HeaderMap(), stream) {}

CefStreamResourceHandler::CefStreamResourceHandler(int status_code, const CefString& status_text,
                                                   const CefString& mime_type,
                                                   CefResponse::HeaderMap header_map,
                                                   CefRefPtr<CefStreamReader> stream)
    : _status_code(status_code),
      _status_text(status_text),
      _mime_type(mime_type),
      _header_map(std::move(header_map)),
      _stream(stream) {}

bool CefStreamResourceHandler::Open(CefRefPtr<CefRequest> request, bool& handle_request,
                                    CefRefPtr<CefCallback> callback) {
  handle_request = true;
  return true;
}

void CefStreamResourceHandler::GetResponseHeaders(CefRefPtr<CefResponse> response,
                                                  int64& response_length, CefString& redirect_url) {
  response->SetStatus(_status_code);
  response->SetStatusText(_status_text);
  response->SetMimeType(_mime_type);
  if (!_header_map.empty()) {
    response->SetHeaderMap(_header_map);
  }
  response_length = -1;
}

bool CefStreamResourceHandler::Read(void* data_out, int bytes_to_read, int& bytes_read,
                                    CefRefPtr<CefResourceReadCallback> callback) {
  bytes_read = 0;
  if (!_stream || bytes_to_read <= 0) {
    return false;
  }
  // A stream may answer in pieces; only an empty answer is its end.
  auto* const target = static_cast<char*>(data_out);
  while (bytes_read < bytes_to_read) {
    const size_t got =
        _stream->Read(target + bytes_read, 1, static_cast<size_t>(bytes_to_read - bytes_read));
    if (got == 0) {
      break;
    }
    bytes_read += static_cast<int>(got);
  }
  return bytes_read > 0;
}
