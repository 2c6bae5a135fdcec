// The wildcard match of the host. In a file of its own, so that other users of strings
// need no host.
#include <adesk.h>

#include <acutads.h>

#include "datastruct/String.h"

namespace TamLib {

template <class T>
bool StringBase<T>::WcMatch(const StringBase& pattern, bool ignoreCase) const {
    if (pattern.count == 0) return true;
    StringBase<wchar_t> text = ToWide();
    StringBase<wchar_t> wanted = pattern.ToWide();
    return acutWcMatchEx(text.Data(), wanted.Data(), ignoreCase);
}

template bool StringBase<char>::WcMatch(const StringBase<char>&, bool) const;
template bool StringBase<wchar_t>::WcMatch(const StringBase<wchar_t>&, bool) const;

}  // namespace TamLib
