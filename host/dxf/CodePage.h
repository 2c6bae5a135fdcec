// Code pages of drawings before R2007, and the escapes for characters outside of them.
//
// Single-byte pages are tables of our own, so that every build gives the same characters. The
// double-byte pages (Japanese, Korean, Chinese) are decoded by the system's converter; where it
// lacks one, each byte becomes U+FFFD. Texts for those pages are encoded with \U+nnnn throughout,
// which every reader of the format understands.
#ifndef HOST_DXF_CODEPAGE_H
#define HOST_DXF_CODEPAGE_H

#include <string>
#include <string_view>

namespace host::dxf {

struct CodePage {
    int number;             // as Windows numbers it: 1252, 932, 850, 10000 for Mac Roman
    const char16_t* upper;  // single-byte: the characters of bytes 80 to FF; null: double-byte
};

// The page that a value of $DWGCODEPAGE names, in any case: "ANSI_1252", "dos850", "MAC-ROMAN",
// "ISO8859_1", "8859_1", "GB2312", "BIG5", "KSC5601", "JOHAB", "ASCII", "UNDEFINED"; the last two
// and an empty name mean 1252. Null when the name says nothing to us.
const CodePage* findCodePage(std::string_view name);

// Texts for display: decoded by `page`, or as UTF-8 when it is null; then \U+nnnn and \M+nxxxx are
// replaced by the characters they stand for (\M+1 is page 932, 2: 950, 3: 949, 4: 1361, 5: 936).
// Pairs of \U+D8xx and \U+DCxx are one character. What can't be decoded becomes U+FFFD; escapes
// that are cut or not hexadecimal stay as they are.
std::wstring decodeText(std::string_view bytes, const CodePage* page);

// The bytes of `text` in `page`, or in UTF-8 when it is null; characters outside of the page as
// \U+nnnn (two of them above FFFF).
std::string encodeText(std::wstring_view text, const CodePage* page);

}  // namespace host::dxf

#endif
