#include "Png.h"

#include <windows.h>

#include <wincodec.h>

#include <filesystem>
#include <memory>

#include "System.h"

namespace host {
namespace {

struct Releaser {
  void operator()(IUnknown* object) const { object->Release(); }
};
template <typename Interface>
using Pointer = std::unique_ptr<Interface, Releaser>;

// What a function of the system hands over by its last argument; null if it fails.
template <typename Interface, typename Call>
Pointer<Interface> Take(Call call) {
  Interface* object = nullptr;
  return Pointer<Interface>(SUCCEEDED(call(&object)) ? object : nullptr);
}

class ComLibrary {
 public:
  ComLibrary() : _initialized(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {}
  ~ComLibrary() {
    if (_initialized) {
      CoUninitialize();
    }
  }

 private:
  const bool _initialized;
};

// The codec's pixels are blue, green and red.
std::vector<BYTE> Swapped(const Picture& picture) {
  std::vector<BYTE> bytes(picture.pixels);
  for (std::size_t i = 0; i + 2 < bytes.size(); i += 3) {
    std::swap(bytes[i], bytes[i + 2]);
  }
  return bytes;
}

bool WriteFrame(IWICBitmapFrameEncode* frame, const Picture& picture) {
  const auto width = static_cast<UINT>(picture.width);
  const auto height = static_cast<UINT>(picture.height);
  WICPixelFormatGUID format = GUID_WICPixelFormat24bppBGR;
  std::vector<BYTE> bytes = Swapped(picture);
  return SUCCEEDED(frame->Initialize(nullptr)) && SUCCEEDED(frame->SetSize(width, height)) &&
         SUCCEEDED(frame->SetPixelFormat(&format)) &&
         IsEqualGUID(format, GUID_WICPixelFormat24bppBGR) &&
         SUCCEEDED(frame->WritePixels(height, width * 3, static_cast<UINT>(bytes.size()),
                                      bytes.data())) &&
         SUCCEEDED(frame->Commit());
}

}  // namespace

bool WritePng(const Picture& picture, const std::string& path) {
  const ComLibrary library;
  const auto factory = Take<IWICImagingFactory>([](IWICImagingFactory** object) {
    return CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER,
                            IID_IWICImagingFactory, reinterpret_cast<void**>(object));
  });
  if (!factory) {
    return false;
  }
  const auto stream =
      Take<IWICStream>([&](IWICStream** object) { return factory->CreateStream(object); });
  const std::wstring name = ToPath(path).make_preferred().wstring();
  if (!stream || FAILED(stream->InitializeFromFilename(name.c_str(), GENERIC_WRITE))) {
    return false;
  }
  const auto encoder = Take<IWICBitmapEncoder>([&](IWICBitmapEncoder** object) {
    return factory->CreateEncoder(GUID_ContainerFormatPng, nullptr, object);
  });
  if (!encoder || FAILED(encoder->Initialize(stream.get(), WICBitmapEncoderNoCache))) {
    return false;
  }
  const auto frame = Take<IWICBitmapFrameEncode>(
      [&](IWICBitmapFrameEncode** object) { return encoder->CreateNewFrame(object, nullptr); });
  return frame && WriteFrame(frame.get(), picture) && SUCCEEDED(encoder->Commit());
}

}  // namespace host
