#include "host/editor/ResultBuffers.h"

#include <acutads.h>

#include <cstdarg>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <new>

#include "host/database/Fault.h"
#include "host/database/Ledger.h"

namespace host::editor {

namespace {

struct Range {
    int first;
    int last;
    ValueKind kind;
};

// Codes of drawings; RT codes stand above 5000.
constexpr Range ranges[] = {
    {-4, -4, ValueKind::text},
    {-3, -3, ValueKind::none},
    {-2, -1, ValueKind::name},
    {0, 9, ValueKind::text},
    {10, 18, ValueKind::point},
    {19, 59, ValueKind::real},
    {60, 79, ValueKind::int16},
    {90, 99, ValueKind::int32},
    {100, 102, ValueKind::text},
    {105, 105, ValueKind::text},
    {110, 112, ValueKind::point},
    {113, 149, ValueKind::real},
    {160, 169, ValueKind::int64},
    {170, 179, ValueKind::int16},
    {210, 210, ValueKind::point},
    {211, 239, ValueKind::real},
    {270, 299, ValueKind::int16},
    {300, 309, ValueKind::text},
    {310, 319, ValueKind::binary},
    {320, 329, ValueKind::text},
    {330, 369, ValueKind::name},
    {370, 389, ValueKind::int16},
    {390, 399, ValueKind::name},
    {400, 409, ValueKind::int16},
    {410, 419, ValueKind::text},
    {420, 429, ValueKind::int32},
    {430, 439, ValueKind::text},
    {440, 459, ValueKind::int32},
    {460, 469, ValueKind::real},
    {470, 479, ValueKind::text},
    {480, 481, ValueKind::name},
    {999, 1003, ValueKind::text},
    {1004, 1004, ValueKind::binary},
    {1005, 1009, ValueKind::text},
    {1010, 1013, ValueKind::point},
    {1014, 1059, ValueKind::real},
    {1060, 1070, ValueKind::int16},
    {1071, 1071, ValueKind::int32},
    {RTNONE, RTNONE, ValueKind::none},
    {RTREAL, RTREAL, ValueKind::real},
    {RTPOINT, RTPOINT, ValueKind::point},
    {RTSHORT, RTSHORT, ValueKind::int16},
    {RTANG, RTANG, ValueKind::real},
    {RTSTR, RTSTR, ValueKind::text},
    {RTENAME, RTPICKS, ValueKind::name},
    {RTORINT, RTORINT, ValueKind::real},
    {RT3DPOINT, RT3DPOINT, ValueKind::point},
    {RTLONG, RTLONG, ValueKind::int32},
    {RTVOID, RTVOID, ValueKind::none},
    {RTLB, RTNIL, ValueKind::none},
    {RTDXF0, RTDXF0, ValueKind::text},
    {RTT, RTT, ValueKind::none},
    {RTLONG_PTR, RTINT64, ValueKind::int64},
};

constexpr const char* ledgerKind = "result buffer";

std::uint64_t ledgerKey(const resbuf* element) {
    return reinterpret_cast<std::uintptr_t>(element);
}

resbuf* newElement(int type) {
    auto* element = new (std::nothrow) resbuf{};
    if (element == nullptr) return nullptr;
    element->restype = static_cast<short>(type);
    database::Ledger::instance().opened(ledgerKind, ledgerKey(element));
    return element;
}

void freeElement(resbuf* element) {
    const ValueKind kind = valueKind(element->restype);
    if (kind == ValueKind::text) std::free(element->resval.rstring);
    if (kind == ValueKind::binary) std::free(element->resval.rbinary.buf);
    database::Ledger::instance().closed(ledgerKind, ledgerKey(element));
    delete element;
}

void freeChain(resbuf* chain) {
    while (chain != nullptr) {
        resbuf* next = chain->rbnext;
        freeElement(chain);
        chain = next;
    }
}

// Sets the value of a new element from the arguments; false for a type that can't be given so, and
// without memory.
bool takeValue(resbuf* element, ValueKind kind, va_list& arguments) {
    ads_u_val& value = element->resval;
    switch (kind) {
        case ValueKind::none:
            return true;
        case ValueKind::real:
            value.rreal = va_arg(arguments, double);
            return true;
        case ValueKind::point: {
            const double* point = va_arg(arguments, const double*);
            if (point == nullptr) return false;
            std::memcpy(value.rpoint, point, sizeof(value.rpoint));
            return true;
        }
        case ValueKind::int16:
            value.rint = static_cast<short>(va_arg(arguments, int));
            return true;
        case ValueKind::int32:
            value.rlong = va_arg(arguments, std::int32_t);
            return true;
        case ValueKind::int64:
            value.mnInt64 = va_arg(arguments, std::int64_t);
            return true;
        case ValueKind::text: {
            const ACHAR* text = va_arg(arguments, const ACHAR*);
            value.rstring = copyText(text == nullptr ? L"" : text);
            return value.rstring != nullptr;
        }
        case ValueKind::name: {
            const std::int64_t* name = va_arg(arguments, const std::int64_t*);
            if (name == nullptr) return false;
            ads_name_set(name, value.rlname);
            return true;
        }
        default:
            return false;
    }
}

}  // namespace

ValueKind valueKind(int type) {
    for (const Range& range : ranges) {
        if (range.first <= type && type <= range.last) return range.kind;
    }
    return ValueKind::unknown;
}

ACHAR* copyText(const ACHAR* text) {
    const std::size_t bytes = (std::wcslen(text) + 1) * sizeof(ACHAR);
    void* copy = std::malloc(bytes);
    if (copy != nullptr) std::memcpy(copy, text, bytes);
    return static_cast<ACHAR*>(copy);
}

void freeText(ACHAR* text) {
    std::free(text);
}

}  // namespace host::editor

using namespace host::editor;

resbuf* acutNewRb(int type) {
    HOST_CALL("acutNewRb");
    return newElement(type);
}

// Frees the chain even when a test orders the answer to be a failure: nobody would ask a second
// time.
int acutRelRb(resbuf* chain) {
    const host::fault::Call call("acutRelRb");
    freeChain(chain);
    if (call.refused()) return call.refusal();
    return RTNORM;
}

resbuf* acutBuildList(int type, ...) {
    HOST_CALL("acutBuildList");
    va_list arguments;
    va_start(arguments, type);
    resbuf* first = nullptr;
    resbuf** end = &first;
    for (int code = type; code != RTNONE && code != 0; code = va_arg(arguments, int)) {
        const ValueKind kind = valueKind(code);
        // A group 0 inside the list is written RTDXF0, because 0 ends it.
        *end = newElement(code == RTDXF0 ? 0 : code);
        if (*end == nullptr || !takeValue(*end, kind, arguments)) {
            freeChain(first);
            first = nullptr;
            break;
        }
        end = &(*end)->rbnext;
    }
    va_end(arguments);
    return first;
}
