#include "requests.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <vector>

#include "audit.h"
#include "glue_conversions.h"
#include "neutral_classes.h"
#include "url.h"
#include "utf.h"

namespace standin {

namespace {

using Headers = std::multimap<CefString, CefString>;

CefString HeaderByName(const Headers& headers, const CefString& name) {
  for (const auto& [key, value] : headers) {
    if (IsNamed(key, name)) {
      return value;
    }
  }
  return CefString();
}

void SetHeader(Headers& headers, const CefString& name, const CefString& value, bool overwrite) {
  for (auto found = headers.begin(); found != headers.end();) {
    if (!IsNamed(found->first, name)) {
      ++found;
    } else if (!overwrite) {
      return;
    } else {
      found = headers.erase(found);
    }
  }
  headers.emplace(name, value);
}

class StandinPostDataElement : public engine_neutral::NeutralPostDataElement {
 public:
  void SetToEmpty() override {
    _type = PDE_TYPE_EMPTY;
    _bytes.clear();
    _file.clear();
  }
  void SetToFile(const CefString& fileName) override {
    SetToEmpty();
    _type = PDE_TYPE_FILE;
    _file = fileName.ToString();
  }
  void SetToBytes(size_t size, const void* bytes) override {
    SetToEmpty();
    _type = PDE_TYPE_BYTES;
    _bytes.assign(static_cast<const char*>(bytes), size);
  }
  Type GetType() override { return _type; }
  CefString GetFile() override { return _file; }
  size_t GetBytesCount() override { return _bytes.size(); }
  size_t GetBytes(size_t size, void* bytes) override {
    const size_t count = std::min(size, _bytes.size());
    std::memcpy(bytes, _bytes.data(), count);
    return count;
  }

 private:
  Type _type = PDE_TYPE_EMPTY;
  std::string _bytes;
  std::string _file;

  STANDIN_OBJECT(StandinPostDataElement);
};

class StandinPostData : public engine_neutral::NeutralPostData {
 public:
  size_t GetElementCount() override { return _elements.size(); }
  void GetElements(ElementVector& elements) override { elements = _elements; }
  bool RemoveElement(CefRefPtr<CefPostDataElement> element) override {
    const auto found = std::find(_elements.begin(), _elements.end(), element);
    if (found == _elements.end()) {
      return false;
    }
    _elements.erase(found);
    return true;
  }
  bool AddElement(CefRefPtr<CefPostDataElement> element) override {
    if (!element) {
      return false;
    }
    _elements.push_back(element);
    return true;
  }
  void RemoveElements() override { _elements.clear(); }

 private:
  ElementVector _elements;

  STANDIN_OBJECT(StandinPostData);
};

uint64 NextIdentifier() {
  static std::atomic<uint64> last{0};
  return ++last;
}

class StandinRequest : public engine_neutral::NeutralRequest {
 public:
  explicit StandinRequest(cef_transition_type_t transition = TT_EXPLICIT,
                          cef_resource_type_t type = RT_SUB_RESOURCE)
      : _transition(transition), _type(type) {}

  CefString GetURL() override { return _url; }
  // Kept in its canonical form, as the engine does.
  void SetURL(const CefString& url) override {
    const Url parsed = ParseUrl(url.ToString());
    _url = parsed.is_valid ? parsed.Spec() : url.ToString();
  }
  CefString GetMethod() override { return _method; }
  void SetMethod(const CefString& method) override { _method = method.ToString(); }
  void SetReferrer(const CefString& referrer_url, ReferrerPolicy policy) override {
    _referrer = referrer_url.ToString();
    _policy = policy;
  }
  CefString GetReferrerURL() override { return _referrer; }
  ReferrerPolicy GetReferrerPolicy() override { return _policy; }
  CefRefPtr<CefPostData> GetPostData() override { return _post_data; }
  void SetPostData(CefRefPtr<CefPostData> postData) override { _post_data = postData; }
  void GetHeaderMap(HeaderMap& headerMap) override { headerMap = _headers; }
  void SetHeaderMap(const HeaderMap& headerMap) override { _headers = headerMap; }
  CefString GetHeaderByName(const CefString& name) override { return HeaderByName(_headers, name); }
  void SetHeaderByName(const CefString& name, const CefString& value, bool overwrite) override {
    SetHeader(_headers, name, value, overwrite);
  }
  void Set(const CefString& url, const CefString& method, CefRefPtr<CefPostData> postData,
           const HeaderMap& headerMap) override {
    SetURL(url);
    SetMethod(method);
    SetPostData(postData);
    SetHeaderMap(headerMap);
  }
  int GetFlags() override { return _flags; }
  void SetFlags(int flags) override { _flags = flags; }
  CefString GetFirstPartyForCookies() override { return _first_party; }
  void SetFirstPartyForCookies(const CefString& url) override { _first_party = url.ToString(); }
  ResourceType GetResourceType() override { return _type; }
  TransitionType GetTransitionType() override { return _transition; }
  uint64 GetIdentifier() override { return _identifier; }

 private:
  std::string _url;
  std::string _method = "GET";
  std::string _referrer;
  std::string _first_party;
  ReferrerPolicy _policy = REFERRER_POLICY_DEFAULT;
  CefRefPtr<CefPostData> _post_data;
  HeaderMap _headers;
  int _flags = 0;
  const cef_transition_type_t _transition;
  const cef_resource_type_t _type;
  const uint64 _identifier = NextIdentifier();

  STANDIN_OBJECT(StandinRequest);
};

class StandinResponse : public engine_neutral::NeutralResponse {
 public:
  cef_errorcode_t GetError() override { return _error; }
  void SetError(cef_errorcode_t error) override { _error = error; }
  int GetStatus() override { return _status; }
  void SetStatus(int status) override { _status = status; }
  CefString GetStatusText() override { return _status_text; }
  void SetStatusText(const CefString& statusText) override { _status_text = statusText.ToString(); }
  CefString GetMimeType() override { return _mime_type; }
  void SetMimeType(const CefString& mimeType) override { _mime_type = mimeType.ToString(); }
  CefString GetCharset() override { return _charset; }
  void SetCharset(const CefString& charset) override { _charset = charset.ToString(); }
  CefString GetHeaderByName(const CefString& name) override { return HeaderByName(_headers, name); }
  void SetHeaderByName(const CefString& name, const CefString& value, bool overwrite) override {
    SetHeader(_headers, name, value, overwrite);
  }
  void GetHeaderMap(HeaderMap& headerMap) override { headerMap = _headers; }
  void SetHeaderMap(const HeaderMap& headerMap) override { _headers = headerMap; }
  CefString GetURL() override { return _url; }
  void SetURL(const CefString& url) override { _url = url.ToString(); }

 private:
  cef_errorcode_t _error = ERR_NONE;
  int _status = 0;
  std::string _status_text;
  std::string _mime_type;
  std::string _charset;
  HeaderMap _headers;
  std::string _url;

  STANDIN_OBJECT(StandinResponse);
};

}  // namespace

bool IsNamed(const CefString& name, const CefString& other) {
  return Lower(name.ToString()) == Lower(other.ToString());
}

CefRefPtr<CefRequest> MakeRequest(const std::string& url, const std::string& method,
                                  cef_transition_type_t transition, cef_resource_type_t type) {
  const CefRefPtr<CefRequest> request = new StandinRequest(transition, type);
  request->SetURL(url);
  request->SetMethod(method);
  return request;
}

CefRefPtr<CefResponse> MakeResponse() {
  return new StandinResponse();
}

std::string BodyOf(const CefRefPtr<CefRequest>& request) {
  std::string body;
  const CefRefPtr<CefPostData> data = request->GetPostData();
  if (!data) {
    return body;
  }
  CefPostData::ElementVector elements;
  data->GetElements(elements);
  for (const auto& element : elements) {
    std::string bytes(element->GetBytesCount(), '\0');
    element->GetBytes(bytes.size(), bytes.data());
    body += bytes;
  }
  return body;
}

}  // namespace standin

extern "C" {

cef_request_t* cef_request_create() {
  return engine_glue::ToC(CefRefPtr<CefRequest>(new standin::StandinRequest()));
}
cef_response_t* cef_response_create() {
  return engine_glue::ToC(standin::MakeResponse());
}
cef_post_data_t* cef_post_data_create() {
  return engine_glue::ToC(CefRefPtr<CefPostData>(new standin::StandinPostData()));
}
cef_post_data_element_t* cef_post_data_element_create() {
  return engine_glue::ToC(CefRefPtr<CefPostDataElement>(new standin::StandinPostDataElement()));
}

}  // extern "C"
