#include "http.h"

#include <array>
#include <cstdlib>

#include "orbcef_standin_sockets.h"
#include "requests.h"
#include "url.h"

namespace standin {

namespace {

constexpr int kDefaultPort = 80;

class Socket {
 public:
  explicit Socket(int port) : _socket(OpenSocket()) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    _is_connected = connect(_socket, reinterpret_cast<sockaddr*>(&address), sizeof(address)) == 0;
  }
  Socket(const Socket&) = delete;
  Socket& operator=(const Socket&) = delete;
  ~Socket() { CloseSocket(_socket); }

  bool IsConnected() const { return _is_connected; }
  bool Send(const std::string& text) const {
    size_t sent = 0;
    while (sent < text.size()) {
      const int count = SendSome(_socket, text.data() + sent, text.size() - sent);
      if (count <= 0) {
        return false;
      }
      sent += static_cast<size_t>(count);
    }
    return true;
  }
  std::string ReceiveAll() const {
    std::string text;
    std::array<char, 4096> block;
    for (int count; (count = ReceiveSome(_socket, block.data(), block.size())) > 0;) {
      text.append(block.data(), static_cast<size_t>(count));
    }
    return text;
  }

 private:
  const SocketHandle _socket;
  bool _is_connected = false;
};

// Only this machine is ever asked.
bool IsLoopback(const std::string& host) {
  return host == "127.0.0.1" || host == "localhost";
}

std::string HeadOf(const CefRefPtr<CefRequest>& request, const Url& url, size_t body_size) {
  std::string head = request->GetMethod().ToString() + " " + url.path +
                     (url.has_query ? "?" + url.query : "") + " HTTP/1.1\r\nHost: " + url.host +
                     (url.port.empty() ? "" : ":" + url.port) + "\r\nConnection: close\r\n";
  CefRequest::HeaderMap headers;
  request->GetHeaderMap(headers);
  for (const auto& [name, value] : headers) {
    head += name.ToString() + ": " + value.ToString() + "\r\n";
  }
  if (body_size > 0) {
    head += "Content-Length: " + std::to_string(body_size) + "\r\n";
  }
  return head + "\r\n";
}

HttpAnswer Failed(cef_errorcode_t error) {
  HttpAnswer answer;
  answer.error = error;
  return answer;
}

HttpAnswer ParseAnswer(const std::string& text) {
  const size_t end = text.find("\r\n\r\n");
  if (text.compare(0, 5, "HTTP/") != 0 || end == std::string::npos) {
    return Failed(ERR_EMPTY_RESPONSE);
  }
  HttpAnswer answer;
  const std::string head = text.substr(0, end + 2);
  answer.body = text.substr(end + 4);
  size_t line_end = head.find("\r\n");
  const std::string first = head.substr(0, line_end);
  const size_t blank = first.find(' ');
  answer.status = std::atoi(first.substr(std::min(blank + 1, first.size())).c_str());
  const size_t reason = first.find(' ', blank + 1);
  answer.status_text = reason == std::string::npos ? std::string() : first.substr(reason + 1);
  while (line_end + 2 < head.size()) {
    const size_t start = line_end + 2;
    line_end = head.find("\r\n", start);
    const std::string line = head.substr(start, line_end - start);
    const size_t colon = line.find(':');
    if (colon != std::string::npos) {
      const size_t value = line.find_first_not_of(' ', colon + 1);
      answer.headers.emplace(line.substr(0, colon),
                             value == std::string::npos ? std::string() : line.substr(value));
    }
  }
  return answer;
}

}  // namespace

HttpAnswer SendHttp(const CefRefPtr<CefRequest>& request) {
  const Url url = ParseUrl(request->GetURL().ToString());
  if (!url.is_valid || url.scheme != "http" || !IsLoopback(url.host)) {
    return Failed(ERR_NAME_NOT_RESOLVED);
  }
  const Socket socket(url.port.empty() ? kDefaultPort : std::atoi(url.port.c_str()));
  if (!socket.IsConnected()) {
    return Failed(ERR_CONNECTION_REFUSED);
  }
  const std::string body = BodyOf(request);
  if (!socket.Send(HeadOf(request, url, body.size()) + body)) {
    return Failed(ERR_CONNECTION_RESET);
  }
  return ParseAnswer(socket.ReceiveAll());
}

Resource FetchHttp(const CefRefPtr<CefRequest>& request) {
  const HttpAnswer answer = SendHttp(request);
  if (answer.error != ERR_NONE) {
    return Failure(answer.error);
  }
  Resource resource;
  resource.status = answer.status;
  resource.body = answer.body;
  for (const auto& [name, value] : answer.headers) {
    if (IsNamed(name, "Content-Type")) {
      resource.mime_type = value.ToString();
    }
  }
  return resource;
}

}  // namespace standin
