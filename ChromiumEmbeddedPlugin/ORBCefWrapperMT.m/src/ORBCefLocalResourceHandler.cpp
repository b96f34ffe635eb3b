#include "ORBCefLocalResourceHandler.h"

#include <cstdio>

#include "ORBCefApp.h"
#include "ORBCefLog.h"
#include "ORBCefResourceTables.h"
#include "ORBCefToolsAccessor.h"
#include "ORBCefToolsWrapperMT.h"
#include "include/cef_response.h"
#include "include/cef_stream.h"
#include "include/wrapper/cef_stream_resource_handler.h"
#include "platform/Files.h"

namespace {

constexpr int kFailed = -2;  // ERR_FAILED
constexpr int kOk = 200;
constexpr int kNotFound = 404;
constexpr int64 kUnknownLength = -1;

bool IsCacheDisabled() {
  static const bool disabled = ORBCefToolsAccessor::ORBGetEnv("ORBCEF_NOCACHE_XORTV") != nullptr;
  return disabled;
}

// From the last dot to the end, wherever in the path the dot is; empty without a dot.
std::string ExtensionOf(const std::string& path) {
  const std::string::size_type dot = path.rfind('.');
  return dot == std::string::npos ? std::string() : path.substr(dot);
}

}  // namespace

std::string LocateResource(const std::string& host, const std::string& path) {
  std::string host_and_path = host;
  if (path.empty() || path.front() != '/')
    host_and_path.push_back('/');
  host_and_path += path;
  const std::string& roots = ORBCefToolsWrapperMT::InstallPath();
  if (host == ORBCefScheme::kWebapps)
    return LocateModuleFile(roots, host, host_and_path);
  return ORBCefToolsWrapperMT::FindFileOnPaths(host_and_path, roots);
}

std::string LocateModuleFile(const std::string& roots, const std::string& host,
                             const std::string& host_and_path) {
  const std::string::size_type slash = host_and_path.find('/', host.size() + 1);
  if (slash == std::string::npos)
    return std::string();
  std::string module = host_and_path.substr(0, slash);
  std::string rest = host_and_path.substr(slash);
  ORBCefToolsWrapperMT::ToNativeSeparators(module);
  ORBCefToolsWrapperMT::ToNativeSeparators(rest);
  const std::string directory = ORBCefToolsWrapperMT::FindDirectoryOnPaths(module, roots);
  if (directory.empty()) {
    ORBCefLog::Error("[xortv] Impossible to locate module: ", module);
    return std::string();
  }
  // A file that this root has not is not looked for in a later one: modules are never mixed.
  return directory + rest;
}

ORBCefLocalResourceHandler::ORBCefLocalResourceHandler(const CefString& host,
                                                       const CefString& path) {
  if (host.empty() || path.empty())
    return;
  OpenFile(host.ToString(), path.ToString());
}

void ORBCefLocalResourceHandler::OpenFile(const std::string& host, const std::string& path) {
  const std::string located = LocateResource(host, path);
  if (!platform::IsReadable(located)) {
    ORBCefLog::Error("[xortv] Impossible to locate resource: ", path);
    return;
  }
  std::string mime_type = ORBCefResourceTables::MimeTypeForExtension(ExtensionOf(located));
  if (mime_type.empty())
    mime_type = ORBCefResourceTables::kDefaultMimeType;
  CefRefPtr<CefStreamReader> stream = CefStreamReader::CreateForFile(located);
  if (!stream)
    return;
  ORBCefLog::Info("Streaming local file.\n", "\tReplacement: ", located, "\n",
                  "\tSource path: ", host, path);
  stream->Seek(0, SEEK_END);
  _size = stream->Tell();
  stream->Seek(0, SEEK_SET);
  _mime_type = mime_type;
  _inner = new CefStreamResourceHandler(mime_type, stream);
}

bool ORBCefLocalResourceHandler::Open(CefRefPtr<CefRequest> request, bool& handle_request,
                                      CefRefPtr<CefCallback> callback) {
  handle_request = true;
  return true;
}

bool ORBCefLocalResourceHandler::ProcessRequest(CefRefPtr<CefRequest> request,
                                                CefRefPtr<CefCallback> callback) {
  return false;
}

void ORBCefLocalResourceHandler::GetResponseHeaders(CefRefPtr<CefResponse> response,
                                                    int64& response_length,
                                                    CefString& redirectUrl) {
  if (!ORBCefToolsWrapperMT::CheckThread(TID_IO) || !response)
    return;
  response->SetStatus(_inner ? kOk : kNotFound);
  response->SetStatusText(_inner ? "OK" : "Not Found");
  response->SetMimeType(_mime_type);
  if (IsCacheDisabled()) {
    CefResponse::HeaderMap headers;
    headers.emplace("Cache-Control", "no-cache");
    response->SetHeaderMap(headers);
  }
  // An empty file has no length either.
  response_length = _size >= 1 ? _size : kUnknownLength;
}

bool ORBCefLocalResourceHandler::Skip(int64 bytes_to_skip, int64& bytes_skipped,
                                      CefRefPtr<CefResourceSkipCallback> callback) {
  bytes_skipped = kFailed;
  return false;
}

bool ORBCefLocalResourceHandler::Read(void* data_out, int bytes_to_read, int& bytes_read,
                                      CefRefPtr<CefResourceReadCallback> callback) {
  bytes_read = 0;
  return _inner && _inner->Read(data_out, bytes_to_read, bytes_read, callback);
}

bool ORBCefLocalResourceHandler::ReadResponse(void* data_out, int bytes_to_read, int& bytes_read,
                                              CefRefPtr<CefCallback> callback) {
  bytes_read = kFailed;
  return false;
}

void ORBCefLocalResourceHandler::Cancel() {}
