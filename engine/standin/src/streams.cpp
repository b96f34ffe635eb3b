// Streams to read from: a file, a copy of some bytes, or a handler of the client.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

#include "audit.h"
#include "glue_conversions.h"
#include "neutral_classes.h"
#include "script.h"

namespace standin {

namespace {

class FileReader : public engine_neutral::NeutralStreamReader {
 public:
  explicit FileReader(std::FILE* file) : _file(file, &std::fclose) {}

  size_t Read(void* ptr, size_t size, size_t n) override {
    return std::fread(ptr, size, n, _file.get());
  }
  int Seek(int64 offset, int whence) override { return std::fseek(_file.get(), offset, whence); }
  int64 Tell() override { return std::ftell(_file.get()); }
  int Eof() override { return std::feof(_file.get()); }
  bool MayBlock() override { return true; }

 private:
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> _file;

  STANDIN_OBJECT(FileReader);
};

class BytesReader : public engine_neutral::NeutralStreamReader {
 public:
  BytesReader(const void* data, size_t size)
      : _bytes(static_cast<const char*>(data), static_cast<const char*>(data) + size) {}

  size_t Read(void* ptr, size_t size, size_t n) override {
    const size_t left = _bytes.size() - _at;
    const size_t count = size == 0 ? 0 : std::min(n, left / size);
    if (count > 0) {
      std::memcpy(ptr, _bytes.data() + _at, count * size);
    }
    _at += count * size;
    return count;
  }
  int Seek(int64 offset, int whence) override {
    const int64 size = static_cast<int64>(_bytes.size());
    const int64 base = whence == SEEK_END ? size : whence == SEEK_CUR ? static_cast<int64>(_at) : 0;
    if (base + offset < 0 || base + offset > size) {
      return -1;
    }
    _at = static_cast<size_t>(base + offset);
    return 0;
  }
  int64 Tell() override { return static_cast<int64>(_at); }
  int Eof() override { return _at >= _bytes.size() ? 1 : 0; }
  bool MayBlock() override { return false; }

 private:
  const std::vector<char> _bytes;
  size_t _at = 0;

  STANDIN_OBJECT(BytesReader);
};

class HandlerReader : public engine_neutral::NeutralStreamReader {
 public:
  explicit HandlerReader(CefRefPtr<CefReadHandler> handler)
      : _handler("client CefReadHandler", std::move(handler)) {}

  size_t Read(void* ptr, size_t size, size_t n) override { return _handler->Read(ptr, size, n); }
  int Seek(int64 offset, int whence) override { return _handler->Seek(offset, whence); }
  int64 Tell() override { return _handler->Tell(); }
  int Eof() override { return _handler->Eof(); }
  bool MayBlock() override { return _handler->MayBlock(); }

 private:
  const Held<CefReadHandler> _handler;

  STANDIN_OBJECT(HandlerReader);
};

cef_stream_reader_t* Give(CefRefPtr<CefStreamReader> reader) {
  return engine_glue::ToC(reader);
}

}  // namespace

}  // namespace standin

extern "C" {

cef_stream_reader_t* cef_stream_reader_create_for_file(const cef_string_t* fileName) {
  if (standin::TakeFault("stream")) {
    return nullptr;
  }
  std::FILE* const file = std::fopen(CefString(fileName).ToString().c_str(), "rb");
  return file ? standin::Give(new standin::FileReader(file)) : nullptr;
}

cef_stream_reader_t* cef_stream_reader_create_for_data(void* data, size_t size) {
  if (!data || size == 0 || standin::TakeFault("stream")) {
    return nullptr;
  }
  return standin::Give(new standin::BytesReader(data, size));
}

cef_stream_reader_t* cef_stream_reader_create_for_handler(cef_read_handler_t* handler) {
  CefRefPtr<CefReadHandler> taken = engine_glue::FromC(handler);
  if (!taken || standin::TakeFault("stream")) {
    return nullptr;
  }
  return standin::Give(new standin::HandlerReader(taken));
}

}  // extern "C"
