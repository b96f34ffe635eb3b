// Stream sockets on 127.0.0.1, one operation for each call of the system, so that a caller decides
// about order and error messages. An abstract class, so that a test can make single steps fail.
//
// Any thread may call; a socket itself is used by one thread at a time. Sockets belong to the
// caller, who closes them.
#ifndef PLATFORM_LOOPBACK_H
#define PLATFORM_LOOPBACK_H

#include <cstddef>
#include <cstdint>

namespace platform {

class Loopback {
 public:
  using Socket = std::intptr_t;
  static constexpr Socket kNoSocket = -1;

  // The system's sockets. Lives as long as the process.
  static Loopback& System();

  virtual ~Loopback() = default;

  // Makes sockets usable in this process: 0, or the system's error code. Each success is matched
  // by one Stop.
  virtual int Start() = 0;
  virtual void Stop() = 0;

  // Error code of the last failed call on this thread.
  virtual int LastError() = 0;

  // A new TCP socket that child processes do not inherit, or kNoSocket.
  virtual Socket Open() = 0;
  // Binds to 127.0.0.1 and a port that the system chooses.
  virtual bool Bind(Socket socket) = 0;
  // The port in host byte order, -1 on failure.
  virtual int BoundPort(Socket socket) = 0;
  virtual bool Listen(Socket socket) = 0;
  // Waits without limit for one connection: its socket, or kNoSocket.
  virtual Socket Accept(Socket socket) = 0;
  virtual bool Connect(Socket socket, int port) = 0;
  // Waits for data: number of bytes, 0 at the end of the stream, below 0 on failure.
  virtual int Receive(Socket socket, char* buffer, std::size_t size) = 0;
  // Number of bytes sent, below 0 on failure. A peer that is gone is a failure, never a signal.
  virtual int Send(Socket socket, const char* data, std::size_t size) = 0;
  virtual bool ShutdownBoth(Socket socket) = 0;
  virtual bool Close(Socket socket) = 0;
};

}  // namespace platform

#endif  // PLATFORM_LOOPBACK_H
