// Texts on their way to and from the module. Records that the host hands over are allocated here
// and freed by the module through the free function that they carry; records that the host only
// lends live on the stack. All functions may be called on any thread.
#pragma once

#include <string>
#include <string_view>

#include "orbcefrecords.h"

namespace host {

// A new record with a copy of `text`, to hand over to the module.
orbcefstring_c* NewRecord(std::string_view text);

// Copy of a lent record's text; empty for null.
std::string TextOf(const orbcefstring_c* record);

// Copy of the text of a record that the module handed over, which is freed; empty for null.
std::string TakeText(orbcefstring_c* record);

// A text lent to the module for one call. The text must outlive the object.
class LentText {
 public:
  explicit LentText(const std::string& text);
  LentText(const LentText&) = delete;
  LentText& operator=(const LentText&) = delete;

  const orbcefstring_c* get() const { return &_record; }

 private:
  orbcefstring_c _record;
};

}  // namespace host
