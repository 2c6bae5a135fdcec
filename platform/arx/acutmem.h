// Texts handed over by the host: the caller owns them and gives them back here.
#pragma once

#include <acadstrc.h>
#include <adesk.h>

// Copies `source` into `target`, a new text owned by the caller; null gives null. eOutOfMemory
// leaves `target` null.
Acad::ErrorStatus acutNewString(const ACHAR* source, ACHAR*& target);

// Frees a text that the host handed over and sets the pointer to null; null is left alone.
void acutDelString(ACHAR*& text);
