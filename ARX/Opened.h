// An open host object that is closed when it goes out of sight, whatever way that is left.
#pragma once

#include <dbmain.h>

#include <memory>

namespace TamLib {

struct ObjectCloser {
    void operator()(AcDbObject* object) const { object->close(); }
};

template <class T>
using Opened = std::unique_ptr<T, ObjectCloser>;

}  // namespace TamLib
