// The MFC string: CStringT<wchar_t> as CStringW and CString, CStringT<char> as CStringA.
//
// A string is one plain pointer to its characters; length, room and the count of its users lie
// before them. Copies share the block until one of them is changed. Since nothing points back at
// the object, it may be moved in memory byte by byte. A string always ends with a terminator.
#pragma once

#include <atomic>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <new>
#include <utility>

#include <tchar.h>

template <class T>
class CStringT {
  public:
    using XCHAR = T;
    using PXSTR = T*;
    using PCXSTR = const T*;

    CStringT() noexcept : text_(Nil()) {}
    // A null text gives an empty string.
    CStringT(const T* text)
        : CStringT(text, Length(text)) {}  // NOLINT(google-explicit-constructor)
    CStringT(const T* text, int length) : text_(Nil()) { Assign(text, length); }
    CStringT(const CStringT& other) noexcept : text_(other.text_) { Share(); }
    CStringT(CStringT&& other) noexcept : text_(std::exchange(other.text_, Nil())) {}
    ~CStringT() { Release(); }

    CStringT& operator=(const CStringT& other) noexcept {
        CStringT copy(other);
        std::swap(text_, copy.text_);
        return *this;
    }
    CStringT& operator=(CStringT&& other) noexcept {
        std::swap(text_, other.text_);
        return *this;
    }
    CStringT& operator=(const T* text) { return *this = CStringT(text); }

    int GetLength() const noexcept { return Head()->length; }
    bool IsEmpty() const noexcept { return GetLength() == 0; }
    void Empty() noexcept { *this = CStringT(); }
    const T* GetString() const noexcept { return text_; }
    operator const T*() const noexcept { return text_; }  // NOLINT(google-explicit-constructor)
    // The index is at most the length, where the terminator stands.
    T operator[](int index) const noexcept { return text_[index]; }

    CStringT& operator+=(const CStringT& other) { return Append(other.text_, other.GetLength()); }
    CStringT& operator+=(const T* text) { return Append(text, Length(text)); }
    CStringT& operator+=(T character) { return Append(&character, 1); }

    // Room for `length` characters and a terminator, of this string alone; followed by
    // ReleaseBuffer.
    T* GetBuffer(int length = 0) {
        Own(length);
        return text_;
    }
    // Settles the length after a direct change; -1: up to the terminator.
    void ReleaseBuffer(int length = -1) {
        if (Head()->references < 0) return;
        Head()->length = length < 0 ? Length(text_) : length;
        text_[Head()->length] = 0;
    }

    // Prints with the run-time's formats. A text that cannot be printed becomes empty.
    void Format(const T* format, ...) {
        va_list arguments;
        va_start(arguments, format);
        FormatV(format, arguments);
        va_end(arguments);
    }
    void FormatV(const T* format, va_list arguments) {
        va_list counted;
        va_copy(counted, arguments);
        const int length = PrintedLength(format, counted);
        va_end(counted);
        CStringT printed;
        if (length > 0) {
            Print(printed.GetBuffer(length), static_cast<std::size_t>(length) + 1, format,
                  arguments);
            printed.ReleaseBuffer(length);
        }
        *this = std::move(printed);
    }

    // Negative, 0 or positive by the numbers of the characters.
    int Compare(const T* other) const noexcept {
        const T* a = text_;
        for (; *a != 0 && *a == *other; ++a) ++other;
        return *a == *other ? 0 : *a < *other ? -1 : 1;
    }

  private:
    struct Block {
        std::atomic<int> references;  // -1: the empty text, shared by all and never freed
        int length;
        int room;
    };
    struct NilBlock {
        Block head;
        T text;
    };

    static T* Nil() noexcept {
        static NilBlock nil{{{-1}, 0, 0}, 0};
        return &nil.text;
    }

    static int Length(const T* text) noexcept {
        if (text == nullptr) return 0;
        int length = 0;
        while (text[length] != 0) ++length;
        return length;
    }

    Block* Head() const noexcept { return reinterpret_cast<Block*>(text_) - 1; }

    void Share() noexcept {
        if (Head()->references >= 0) ++Head()->references;
    }

    void Release() noexcept {
        if (Head()->references >= 0 && --Head()->references == 0) {
            Head()->~Block();
            std::free(Head());
        }
    }

    static T* NewBlock(int room) {
        void* const memory =
            std::malloc(sizeof(Block) + (static_cast<std::size_t>(room) + 1) * sizeof(T));
        if (memory == nullptr) throw std::bad_alloc();
        auto* const text = reinterpret_cast<T*>(new (memory) Block{{1}, 0, room} + 1);
        text[0] = 0;
        return text;
    }

    // A block of this string alone with room for `room` characters; the text is kept.
    void Own(int room) {
        const int length = GetLength();
        if (Head()->references == 1 && Head()->room >= room) return;
        T* const block = NewBlock(room > length ? room : length);
        std::memcpy(block, text_, static_cast<std::size_t>(length) * sizeof(T));
        block[length] = 0;
        Release();
        text_ = block;
        Head()->length = length;
    }

    void Assign(const T* text, int length) {
        if (length <= 0) return;
        T* const block = NewBlock(length);
        std::memcpy(block, text, static_cast<std::size_t>(length) * sizeof(T));
        block[length] = 0;
        text_ = block;
        Head()->length = length;
    }

    // The text may be part of this string.
    CStringT& Append(const T* text, int length) {
        if (length <= 0) return *this;
        const CStringT before(*this);
        const int kept = GetLength();
        Own(kept + length);
        std::memcpy(text_ + kept, text, static_cast<std::size_t>(length) * sizeof(T));
        text_[kept + length] = 0;
        Head()->length = kept + length;
        return *this;
    }

    static int PrintedLength(const wchar_t* format, va_list arguments) {
        return _vscwprintf(format, arguments);
    }
    static int PrintedLength(const char* format, va_list arguments) {
        return _vscprintf(format, arguments);
    }
    static void Print(wchar_t* buffer, std::size_t size, const wchar_t* format, va_list arguments) {
        _vsnwprintf(buffer, size, format, arguments);
    }
    static void Print(char* buffer, std::size_t size, const char* format, va_list arguments) {
        _vsnprintf(buffer, size, format, arguments);
    }

    T* text_;
};

template <class T>
CStringT<T> operator+(const CStringT<T>& first, const CStringT<T>& second) {
    CStringT<T> joined(first);
    return joined += second;
}
template <class T>
CStringT<T> operator+(const CStringT<T>& first, const T* second) {
    CStringT<T> joined(first);
    return joined += second;
}
template <class T>
CStringT<T> operator+(const T* first, const CStringT<T>& second) {
    CStringT<T> joined(first);
    return joined += second;
}

template <class T>
bool operator==(const CStringT<T>& first, const CStringT<T>& second) {
    return first.Compare(second.GetString()) == 0;
}
template <class T>
bool operator==(const CStringT<T>& first, const T* second) {
    return first.Compare(second) == 0;
}
template <class T>
bool operator!=(const CStringT<T>& first, const CStringT<T>& second) {
    return !(first == second);
}
template <class T>
bool operator!=(const CStringT<T>& first, const T* second) {
    return !(first == second);
}
template <class T>
bool operator<(const CStringT<T>& first, const CStringT<T>& second) {
    return first.Compare(second.GetString()) < 0;
}

using CStringW = CStringT<wchar_t>;
using CStringA = CStringT<char>;
using CString = CStringW;
