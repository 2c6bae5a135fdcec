// What kinds of values result buffers hold, by their type or group code.
#pragma once

#include <adsdef.h>

namespace host::editor {

enum class ValueKind { none, real, point, int16, int32, int64, text, name, binary, unknown };

// The kind of value that belongs to an RT code or to a group code as entity lists have them: groups
// 10 to 18, 110 to 112, 210 and 1010 to 1013 are whole points, 330 to 369 entity names.
ValueKind valueKind(int type);

// A copy of a text as result buffers own it, or null without memory; and how it is freed outside of
// a chain.
ACHAR* copyText(const ACHAR* text);
void freeText(ACHAR* text);

}  // namespace host::editor
