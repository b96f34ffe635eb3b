// The engine's pointer types: counted, owned and lent.
#ifndef CEF_INCLUDE_INTERNAL_CEF_PTR_H_
#define CEF_INCLUDE_INTERNAL_CEF_PTR_H_

#include <memory>

#include "include/base/cef_scoped_refptr.h"

template <class T>
using CefRefPtr = scoped_refptr<T>;

template <class T, class D = std::default_delete<T>>
using CefOwnPtr = std::unique_ptr<T, D>;

template <class T>
using CefRawPtr = T*;

#endif  // CEF_INCLUDE_INTERNAL_CEF_PTR_H_
