#include "ORBCefConversionToolsWrapperMT.h"

#include <cstring>

#include "ORBCefAssert.h"

namespace {

// The free functions are called by hosts, so they have C linkage. Each record and array comes from
// this file; its elements go through their own free functions.
extern "C" {

static void FreeString(orbcefstring_c* record) {
  if (!record)
    return;
  delete[] record->data;
  record->data = nullptr;
  record->length = 0;
  delete record;
}

static void FreeMap(orbcefstringmap_c* record) {
  if (!record)
    return;
  const auto free_element = [](orbcefstring_c*& element) {
    if (element && element->free) {
      element->free(element);
      element = nullptr;
    }
  };
  for (std::uint64_t i = 0; i < record->_nb_values; ++i) {
    free_element(record->keys[i]);
    free_element(record->values[i]);
  }
  delete[] record->keys;
  delete[] record->values;
  record->keys = nullptr;
  record->values = nullptr;
  record->_nb_values = 0;
  delete record;
}

static void FreeResponse(orbcefresponse_c* record) {
  if (!record)
    return;
  if (record->text && record->text->free) {
    record->text->free(record->text);
    record->text = nullptr;
  }
  if (record->headers && record->headers->free) {
    record->headers->free(record->headers);
    record->headers = nullptr;
  }
  delete record;
}

static void FreeReplayResult(orbcefreplayresult_c* record) {
  if (!record)
    return;
  if (record->message && record->message->free) {
    record->message->free(record->message);
    record->message = nullptr;
  }
  delete record;
}

}  // extern "C"

orbcefstring_c* NewString(const char* data, std::uint64_t length) {
  auto* record = new orbcefstring_c{nullptr, 0, &FreeString};
  if (length > 0) {
    record->data = new char[length];
    std::memcpy(record->data, data, length);
    record->length = length;
  }
  return record;
}

// A map with room for `count` pairs and none in it.
orbcefstringmap_c* NewMap(std::uint64_t count) {
  auto* record = new orbcefstringmap_c{nullptr, nullptr, 0, &FreeMap};
  if (count > 0) {
    record->keys = new orbcefstring_c*[count]();
    record->values = new orbcefstring_c*[count]();
  }
  return record;
}

orbcefstring_c* CloneString(const orbcefstring_c* record) {
  return record ? NewString(record->data, record->length) : nullptr;
}

}  // namespace

namespace ORBCefConversionToolsWrapperMT {

orbcefstring_c* ToCString(const CefString& text) {
  // Straight into the record: what a page sends may be megabytes long.
  cef_string_utf8_t utf8{};
  cef_string_utf16_to_utf8(text.c_str(), text.length(), &utf8);
  orbcefstring_c* record = NewString(utf8.str, utf8.length);
  cef_string_utf8_clear(&utf8);
  return record;
}

orbcefstring_c* ToCString(const std::string& text) {
  return NewString(text.data(), text.size());
}

CefString FromCStringToCef(const orbcefstring_c* record) {
  CefString text;
  // Straight from the record: a script or an answer may be megabytes long.
  if (record && record->data)
    text.FromString(record->data, record->length);
  return text;
}

std::string FromCString(const orbcefstring_c* record) {
  if (!record || !record->data)
    return std::string();
  return std::string(record->data, record->length);
}

std::string ToStdString(const CefString& text) {
  return text.ToString();
}

CefString ToCefString(const std::string& text) {
  return text.empty() ? CefString() : CefString(text);
}

orbcefstringmap_c* ToCMap(const CefRequest::HeaderMap& map) {
  const std::uint64_t nb_elem = map.size();
  orbcefstringmap_c* record = NewMap(nb_elem);
  for (const auto& header : map) {
    record->keys[record->_nb_values] = ToCString(header.first);
    record->values[record->_nb_values] = ToCString(header.second);
    ++record->_nb_values;
  }
  ORBCefCheck(record->_nb_values == nb_elem, ORBCefCheckSites::kMapCount);
  return record;
}

orbcefresponse_c* MakeResponse(std::int32_t status, const CefString& text,
                               const CefRequest::HeaderMap& headers) {
  return new orbcefresponse_c{status, ToCString(text), ToCMap(headers), &FreeResponse};
}

orbcefreplayresult_c* MakeReplayResult(std::int32_t status, const std::string& message) {
  return new orbcefreplayresult_c{status, ToCString(message), &FreeReplayResult};
}

orbcefstringmap_c* CloneCMap(const orbcefstringmap_c* map) {
  if (!map)
    return nullptr;
  orbcefstringmap_c* copy = NewMap(map->_nb_values);
  for (std::uint64_t i = 0; i < map->_nb_values; ++i) {
    copy->keys[i] = CloneString(map->keys[i]);
    copy->values[i] = CloneString(map->values[i]);
    ++copy->_nb_values;
  }
  return copy;
}

orbcefresponse_c* CloneResponse(const orbcefresponse_c* response) {
  if (!response)
    return nullptr;
  return new orbcefresponse_c{response->status, CloneString(response->text),
                              CloneCMap(response->headers), &FreeResponse};
}

}  // namespace ORBCefConversionToolsWrapperMT
