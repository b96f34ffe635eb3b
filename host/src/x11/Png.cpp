#include "Png.h"

#include <png.h>

namespace host {

bool WritePng(const Picture& picture, const std::string& path) {
  png_image image = {};
  image.version = PNG_IMAGE_VERSION;
  image.width = static_cast<png_uint_32>(picture.width);
  image.height = static_cast<png_uint_32>(picture.height);
  image.format = PNG_FORMAT_RGB;
  const int written =
      png_image_write_to_file(&image, path.c_str(), 0, picture.pixels.data(), 0, nullptr);
  png_image_free(&image);
  return written != 0;
}

}  // namespace host
