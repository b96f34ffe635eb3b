// Turns the plain records of the boundary into the module's and the engine's texts and back.
//
// Any thread may call: the functions touch only their arguments. Every record that they return
// belongs to the caller, who hands it on or frees it through its own free function.
#ifndef ORBCEFCONVERSIONTOOLSWRAPPERMT_H
#define ORBCEFCONVERSIONTOOLSWRAPPERMT_H

#include <cstdint>
#include <string>
#include <utility>

#include "include/cef_request.h"
#include "orbcefrecords.h"

namespace ORBCefConversionToolsWrapperMT {

// Always a new record, for an empty text too.
orbcefstring_c* ToCString(const CefString& text);
orbcefstring_c* ToCString(const std::string& text);

// Null or empty gives an empty text.
CefString FromCStringToCef(const orbcefstring_c* record);
std::string FromCString(const orbcefstring_c* record);

std::string ToStdString(const CefString& text);
// An empty text gives a CefString without data.
CefString ToCefString(const std::string& text);

// One pair for each header in the map's order; equal keys stay separate.
orbcefstringmap_c* ToCMap(const CefRequest::HeaderMap& map);

orbcefresponse_c* MakeResponse(std::int32_t status, const CefString& text,
                               const CefRequest::HeaderMap& headers);

// A new replay outcome. `message` may be empty.
orbcefreplayresult_c* MakeReplayResult(std::int32_t status, const std::string& message);

// Deep copies; null gives null, and a null element stays null.
orbcefstringmap_c* CloneCMap(const orbcefstringmap_c* map);
orbcefresponse_c* CloneResponse(const orbcefresponse_c* response);

}  // namespace ORBCefConversionToolsWrapperMT

// Owns one record of the boundary and frees it through the record's own free function.
template <class Record>
class ORBCefRecordHolder {
 public:
  ORBCefRecordHolder() = default;
  explicit ORBCefRecordHolder(Record* record) : _record(record) {}
  ORBCefRecordHolder(ORBCefRecordHolder&& other) noexcept : _record(other.Release()) {}
  ORBCefRecordHolder& operator=(ORBCefRecordHolder&& other) noexcept {
    std::swap(_record, other._record);
    return *this;
  }
  ORBCefRecordHolder(const ORBCefRecordHolder&) = delete;
  ORBCefRecordHolder& operator=(const ORBCefRecordHolder&) = delete;
  ~ORBCefRecordHolder() {
    if (_record && _record->free)
      _record->free(_record);
  }

  Record* Get() const { return _record; }
  explicit operator bool() const { return _record != nullptr; }
  // Hands the record on to somebody who frees it.
  Record* Release() { return std::exchange(_record, nullptr); }

 private:
  Record* _record = nullptr;
};

class ORBCefCStringHolder : public ORBCefRecordHolder<orbcefstring_c> {
 public:
  ORBCefCStringHolder() = default;
  explicit ORBCefCStringHolder(orbcefstring_c* record) : ORBCefRecordHolder(record) {}
  explicit ORBCefCStringHolder(const std::string& text)
      : ORBCefRecordHolder(ORBCefConversionToolsWrapperMT::ToCString(text)) {}
  explicit ORBCefCStringHolder(const CefString& text)
      : ORBCefRecordHolder(ORBCefConversionToolsWrapperMT::ToCString(text)) {}

  // A copy of the text; a null record counts as empty.
  std::string Text() const { return ORBCefConversionToolsWrapperMT::FromCString(Get()); }
};

#endif  // ORBCEFCONVERSIONTOOLSWRAPPERMT_H
