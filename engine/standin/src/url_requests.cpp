// Requests of the client outside of any page. A request belongs to the engine thread that made it,
// and its client is called there; credentials are asked for on the IO thread.
#include <atomic>
#include <mutex>
#include <optional>

#include "audit.h"
#include "encoding.h"
#include "glue_conversions.h"
#include "http.h"
#include "include/cef_auth_callback.h"
#include "neutral_classes.h"
#include "requests.h"
#include "script.h"
#include "threads.h"
#include "url.h"

namespace standin {

namespace {

constexpr int kUnauthorized = 401;
constexpr int kNoThread = -1;

int CurrentThread() {
  for (int id = TID_UI; id <= TID_RENDERER; ++id) {
    if (IsOn(static_cast<cef_thread_id_t>(id))) {
      return id;
    }
  }
  return kNoThread;
}

CefString HeaderOf(const HttpAnswer& answer, const char* name) {
  const CefRefPtr<CefResponse> response = MakeResponse();
  response->SetHeaderMap(answer.headers);
  return response->GetHeaderByName(name);
}

class StandinUrlRequest : public engine_neutral::NeutralURLRequest {
 public:
  StandinUrlRequest(CefRefPtr<CefRequest> request, const CefRefPtr<CefURLRequestClient>& client,
                    int thread)
      : _request(std::move(request)), _thread(static_cast<cef_thread_id_t>(thread)) {
    if (client) {
      _client.emplace("client CefURLRequestClient", client);
    }
  }

  CefRefPtr<CefRequest> GetRequest() override { return _request; }
  CefRefPtr<CefURLRequestClient> GetClient() override { return Client(); }
  Status GetRequestStatus() override { return _status; }
  ErrorCode GetRequestError() override { return _error; }
  CefRefPtr<CefResponse> GetResponse() override {
    const std::lock_guard<std::mutex> guard(_lock);
    return _response;
  }
  void Cancel() override {
    Note("url_request.cancel", _request->GetURL().ToString());
    HttpAnswer aborted;
    aborted.error = ERR_ABORTED;
    // An answer that is already on its way to the client's thread comes too late.
    _is_cancelled = true;
    Complete(UR_CANCELED, aborted);
  }

  static void Send(const CefRefPtr<StandinUrlRequest>& self) {
    Post(TID_FILE_USER_BLOCKING, [self] {
      const HttpAnswer answer = SendHttp(self->_request);
      const bool has_credentials = !self->_request->GetHeaderByName("Authorization").empty();
      if (answer.status == kUnauthorized && !has_credentials) {
        Post(TID_IO, [self, answer] { self->AskForCredentials(answer); });
      } else {
        self->Complete(answer.error == ERR_NONE ? UR_SUCCESS : UR_FAILED, answer);
      }
    });
  }

  // Once; what comes later is dropped.
  void Complete(Status status, const HttpAnswer& answer) {
    const CefRefPtr<StandinUrlRequest> self = this;
    Post(_thread, [self, status, answer] { self->Deliver(status, answer); });
  }

  void SendWithCredentials(const std::string& user, const std::string& password) {
    _request->SetHeaderByName("Authorization", "Basic " + Base64(user + ":" + password), true);
    Send(this);
  }

 private:
  CefRefPtr<CefURLRequestClient> Client() {
    const std::lock_guard<std::mutex> guard(_lock);
    return _client ? _client->get() : nullptr;
  }

  void AskForCredentials(const HttpAnswer& answer);

  void Deliver(Status status, const HttpAnswer& answer) {
    if ((_is_cancelled && status != UR_CANCELED) || _is_over.exchange(true)) {
      return;
    }
    const CefRefPtr<CefResponse> response = MakeResponse();
    response->SetError(answer.error);
    response->SetStatus(answer.status);
    response->SetStatusText(answer.status_text);
    response->SetHeaderMap(answer.headers);
    response->SetMimeType(response->GetHeaderByName("Content-Type"));
    response->SetURL(_request->GetURL());
    _status = status;
    _error = answer.error;
    {
      const std::lock_guard<std::mutex> guard(_lock);
      _response = response;
    }
    Note("url_request.done", _request->GetURL().ToString() + " " + std::to_string(status) + " " +
                                 std::to_string(answer.status) + " " +
                                 std::to_string(answer.error));
    if (const CefRefPtr<CefURLRequestClient> client = Client()) {
      Tell(*client, status, answer);
    }
    std::optional<Held<CefURLRequestClient>> client;
    const std::lock_guard<std::mutex> guard(_lock);
    client.swap(_client);
  }

  void Tell(CefURLRequestClient& client, Status status, const HttpAnswer& answer) {
    const auto sent = static_cast<int64>(BodyOf(_request).size());
    const auto received = static_cast<int64>(answer.body.size());
    const bool is_good = status == UR_SUCCESS;
    if (is_good && sent > 0 && _request->GetFlags() & UR_FLAG_REPORT_UPLOAD_PROGRESS) {
      client.OnUploadProgress(this, sent, sent);
    }
    if (is_good && received > 0) {
      client.OnDownloadProgress(this, received, received);
      if (!(_request->GetFlags() & UR_FLAG_NO_DOWNLOAD_DATA)) {
        client.OnDownloadData(this, answer.body.data(), answer.body.size());
      }
    }
    client.OnRequestComplete(this);
  }

  const CefRefPtr<CefRequest> _request;
  const cef_thread_id_t _thread;
  std::atomic<Status> _status{UR_IO_PENDING};
  std::atomic<ErrorCode> _error{ERR_NONE};
  std::atomic<bool> _is_cancelled{false};
  std::atomic<bool> _is_over{false};

  std::mutex _lock;
  // Guarded by _lock.
  std::optional<Held<CefURLRequestClient>> _client;
  CefRefPtr<CefResponse> _response;

  STANDIN_OBJECT(StandinUrlRequest);
};

// What the client answers the request for credentials through, once and on any thread.
class StandinAuthCallback : public engine_neutral::NeutralAuthCallback {
 public:
  StandinAuthCallback(CefRefPtr<StandinUrlRequest> request, HttpAnswer refused)
      : _request(std::move(request)), _refused(std::move(refused)) {}

  void Continue(const CefString& username, const CefString& password) override {
    if (!_is_answered.exchange(true)) {
      _request->SendWithCredentials(username.ToString(), password.ToString());
    }
  }
  void Cancel() override {
    if (!_is_answered.exchange(true)) {
      _request->Complete(UR_SUCCESS, _refused);
    }
  }

 private:
  const CefRefPtr<StandinUrlRequest> _request;
  const HttpAnswer _refused;
  std::atomic<bool> _is_answered{false};

  STANDIN_OBJECT(StandinAuthCallback);
};

void StandinUrlRequest::AskForCredentials(const HttpAnswer& answer) {
  const CefRefPtr<CefURLRequestClient> client = Client();
  const CefRefPtr<CefAuthCallback> callback = new StandinAuthCallback(this, answer);
  const Url url = ParseUrl(_request->GetURL().ToString());
  const int port = url.port.empty() ? 80 : std::atoi(url.port.c_str());
  const CefString realm = HeaderOf(answer, "WWW-Authenticate");
  if (!client || !client->GetAuthCredentials(false, url.host, port, realm, "basic", callback)) {
    callback->Cancel();
  }
}

}  // namespace

}  // namespace standin

extern "C" cef_urlrequest_t* cef_urlrequest_create(cef_request_t* request,
                                                   cef_urlrequest_client_t* client,
                                                   cef_request_context_t* request_context) {
  const CefRefPtr<CefRequest> taken = engine_glue::FromC(request);
  const CefRefPtr<CefURLRequestClient> its_client = engine_glue::FromC(client);
  const CefRefPtr<CefRequestContext> context = engine_glue::FromC(request_context);
  const int thread = standin::CurrentThread();
  if (!taken || thread == standin::kNoThread || standin::TakeFault("url_request")) {
    standin::Note("url_request.refused");
    return nullptr;
  }
  standin::Note("url_request", taken->GetMethod().ToString() + " " + taken->GetURL().ToString());
  const CefRefPtr<standin::StandinUrlRequest> made =
      new standin::StandinUrlRequest(taken, its_client, thread);
  cef_urlrequest_t* const given = engine_glue::ToC(CefRefPtr<CefURLRequest>(made));
  standin::StandinUrlRequest::Send(made);
  return given;
}
