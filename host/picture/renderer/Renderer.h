// What the rendering module exports: SVG as a bitmap or as a printable document, by librsvg and
// cairo. It is a module of its own, loaded when it is needed, so that the program starts without
// these libraries and runs where they are missing.
#pragma once

#include <cstddef>

extern "C" {

enum OrlinthFormat { orlinthPng = 0, orlinthPdf = 1 };

// Takes the bytes of the result, piece by piece.
using OrlinthSink = void (*)(void* receiver, const char* bytes, std::size_t size);

// Renders the picture in the size that it tells for paper; a bitmap with `dotsPerInch`. Returns 0,
// or 1 with the reason in `reason` (UTF-8, cut to `reasonSize` bytes, the ending 0 included).
using OrlinthRender = int(const char* svg, std::size_t size, OrlinthFormat format,
                          double dotsPerInch, OrlinthSink sink, void* receiver, char* reason,
                          std::size_t reasonSize);
}
