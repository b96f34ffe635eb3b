// Serves one file of the installation to the engine, or answers 404. Also the search that turns a
// host and a path into a file, which the whole module uses.
//
// Made per request on the engine's IO thread; all file work but the reading is done in the
// constructor. Read comes on a thread of the engine's choice. The engine owns the handler.
// LocateResource and LocateModuleFile may be called on any thread.
#ifndef ORBCEFLOCALRESOURCEHANDLER_H
#define ORBCEFLOCALRESOURCEHANDLER_H

#include <string>

#include "include/cef_resource_handler.h"

// The file that `host` and `path` stand for below the roots of the installation, empty if there is
// none. A module ("webapps") is bound to the first root that has its directory; anything else is
// looked for below each root.
std::string LocateResource(const std::string& host, const std::string& path);

// The part of LocateResource for modules: `host_and_path` is "webapps/<module>/<rest>". The file
// itself need not exist.
std::string LocateModuleFile(const std::string& roots, const std::string& host,
                             const std::string& host_and_path);

class ORBCefLocalResourceHandler : public CefResourceHandler {
 public:
  ORBCefLocalResourceHandler(const CefString& host, const CefString& path);

  bool Open(CefRefPtr<CefRequest> request, bool& handle_request,
            CefRefPtr<CefCallback> callback) override;
  // The older entry, not used.
  bool ProcessRequest(CefRefPtr<CefRequest> request, CefRefPtr<CefCallback> callback) override;
  void GetResponseHeaders(CefRefPtr<CefResponse> response, int64& response_length,
                          CefString& redirectUrl) override;
  // Always fails: there are no ranged reads.
  bool Skip(int64 bytes_to_skip, int64& bytes_skipped,
            CefRefPtr<CefResourceSkipCallback> callback) override;
  bool Read(void* data_out, int bytes_to_read, int& bytes_read,
            CefRefPtr<CefResourceReadCallback> callback) override;
  // The older entry, always fails.
  bool ReadResponse(void* data_out, int bytes_to_read, int& bytes_read,
                    CefRefPtr<CefCallback> callback) override;
  void Cancel() override;

 private:
  void OpenFile(const std::string& host, const std::string& path);

  // Null if the file was not found.
  CefRefPtr<CefResourceHandler> _inner;
  CefString _mime_type;
  int64 _size = 0;

  IMPLEMENT_REFCOUNTING(ORBCefLocalResourceHandler);
};

#endif  // ORBCEFLOCALRESOURCEHANDLER_H
