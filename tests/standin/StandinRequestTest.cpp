// Pages and requests over the loopback interface.
#include <gtest/gtest.h>

#include "Control.h"
#include "Host.h"
#include "LoopbackServer.h"
#include "include/cef_auth_callback.h"
#include "include/cef_request.h"
#include "include/cef_response.h"
#include "include/cef_task.h"
#include "include/cef_urlrequest.h"

namespace {

using standin_host::Events;
using standin_host::Host;
using standin_host::InOwnProcess;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

TEST(StandinRequestTest, APageComesOverTheWireWithTheViewsLanguage) {
  InOwnProcess([] {
    LoopbackServer server({LoopbackServer::Page("<title>Served</title>")});
    Host host;
    host.tools.language = "German";
    Events events;
    orbcefbrowser_c* const view = host.NewView(events);
    host.Open(view, server.Url("/page?a=b"));
    EXPECT_TRUE(events.Has("title Served"));
    EXPECT_THAT(server.Requests(), ElementsAre(AllOf(StartsWith("GET /page?a=b HTTP/1.1\r\n"),
                                                     HasSubstr("\r\nAccept-Language: de\r\n"))));
    host.CloseAndRelease(view);
  });
}

// Writes down what comes, and on which thread.
class ClientDouble : public CefURLRequestClient {
 public:
  explicit ClientDouble(bool has_credentials) : _has_credentials(has_credentials) {}

  void OnRequestComplete(CefRefPtr<CefURLRequest> request) override {
    EXPECT_TRUE(CefCurrentlyOn(TID_UI));
    lines.push_back("complete " + std::to_string(request->GetRequestStatus()) + " " +
                    std::to_string(request->GetResponse()->GetStatus()));
  }
  void OnUploadProgress(CefRefPtr<CefURLRequest>, int64 current, int64) override {
    lines.push_back("sent " + std::to_string(current));
  }
  void OnDownloadProgress(CefRefPtr<CefURLRequest>, int64, int64) override {}
  void OnDownloadData(CefRefPtr<CefURLRequest>, const void* data, size_t length) override {
    lines.push_back("data " + std::string(static_cast<const char*>(data), length));
  }
  bool GetAuthCredentials(bool, const CefString&, int, const CefString&, const CefString&,
                          CefRefPtr<CefAuthCallback> callback) override {
    EXPECT_TRUE(CefCurrentlyOn(TID_IO));
    if (_has_credentials)
      callback->Continue("user", "word");
    return _has_credentials;
  }

  // Read when the engine is down.
  std::vector<std::string> lines;

 private:
  const bool _has_credentials;

  IMPLEMENT_REFCOUNTING(ClientDouble);
};

class SendTask : public CefTask {
 public:
  SendTask(CefRefPtr<CefRequest> request, CefRefPtr<CefURLRequestClient> client, bool is_cancelled)
      : _request(request), _client(client), _is_cancelled(is_cancelled) {}
  void Execute() override {
    const CefRefPtr<CefURLRequest> sent = CefURLRequest::Create(_request, _client, nullptr);
    if (sent && _is_cancelled)
      sent->Cancel();
  }

 private:
  const CefRefPtr<CefRequest> _request;
  const CefRefPtr<CefURLRequestClient> _client;
  const bool _is_cancelled;

  IMPLEMENT_REFCOUNTING(SendTask);
};

// Sends a request from the UI thread and answers what its client was told.
std::vector<std::string> Send(const std::string& url, const std::string& body = std::string(),
                              bool has_credentials = false, bool is_cancelled = false) {
  Host host;
  host.Init();
  CefRefPtr<CefRequest> request = CefRequest::Create();
  request->SetURL(url);
  if (!body.empty()) {
    request->SetMethod("POST");
    request->SetFlags(UR_FLAG_REPORT_UPLOAD_PROGRESS);
    const CefRefPtr<CefPostDataElement> element = CefPostDataElement::Create();
    element->SetToBytes(body.size(), body.data());
    const CefRefPtr<CefPostData> data = CefPostData::Create();
    data->AddElement(element);
    request->SetPostData(data);
  }
  const CefRefPtr<ClientDouble> client = new ClientDouble(has_credentials);
  EXPECT_TRUE(CefPostTask(TID_UI, new SendTask(request, client, is_cancelled)));
  request = nullptr;
  EXPECT_TRUE(control::Wait("url_request.done"));
  control::SettleAll();
  EXPECT_EQ(control::Living("client CefURLRequestClient"), 0);
  EXPECT_EQ(control::Living("StandinUrlRequest"), 0);
  // The client's thread ends before what it wrote is read.
  host.Shutdown();
  return client->lines;
}

TEST(StandinRequestTest, ABodyGoesOutAndAnAnswerComesBack) {
  InOwnProcess([] {
    LoopbackServer server({LoopbackServer::Page("back")});
    EXPECT_THAT(Send(server.Url("/x"), "there"),
                ElementsAre("sent 5", "data back", "complete 1 200"));
    EXPECT_THAT(server.Requests(),
                ElementsAre(AllOf(StartsWith("POST /x HTTP/1.1\r\n"), HasSubstr("\r\n\r\nthere"))));
  });
}

constexpr char kRefusal[] = "HTTP/1.1 401 Unauthorized\r\nWWW-Authenticate: Basic\r\n\r\n";

TEST(StandinRequestTest, CredentialsAreAskedForOnce) {
  InOwnProcess([] {
    LoopbackServer server({kRefusal, LoopbackServer::Page("in")});
    EXPECT_THAT(Send(server.Url("/"), "", true), ElementsAre("data in", "complete 1 200"));
    ASSERT_EQ(server.Requests().size(), 2u);
    EXPECT_THAT(server.Requests()[1], HasSubstr("\r\nAuthorization: Basic dXNlcjp3b3Jk\r\n"));
  });
}

TEST(StandinRequestTest, WithoutCredentialsTheRefusalIsTheAnswer) {
  InOwnProcess([] {
    LoopbackServer server({kRefusal});
    EXPECT_THAT(Send(server.Url("/")), ElementsAre("complete 1 401"));
  });
}

TEST(StandinRequestTest, ARequestThatIsCancelledAtOnceCompletesOnce) {
  InOwnProcess([] {
    LoopbackServer server({LoopbackServer::Page("late")});
    EXPECT_THAT(Send(server.Url("/"), "", false, true), ElementsAre("complete 3 0"));
  });
}

TEST(StandinRequestTest, OffTheEnginesThreadsThereIsNoRequest) {
  InOwnProcess([] {
    Host host;
    host.Init();
    CefRefPtr<CefRequest> request = CefRequest::Create();
    request->SetURL("http://127.0.0.1:1/");
    EXPECT_FALSE(CefURLRequest::Create(request, new ClientDouble(false), nullptr));
    request = nullptr;
  });
}

}  // namespace
