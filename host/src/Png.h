// Writes pictures. Any thread.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace host {

// Rows from top to bottom, three bytes (red, green, blue) for each pixel.
struct Picture {
  int width = 0;
  int height = 0;
  std::vector<std::uint8_t> pixels;

  bool empty() const { return pixels.empty(); }
  bool operator==(const Picture& other) const {
    return width == other.width && height == other.height && pixels == other.pixels;
  }
};

// Writes `picture` as a PNG file. False if the file cannot be written.
bool WritePng(const Picture& picture, const std::string& path);

}  // namespace host
