// Strings to and from files and streams.
#include <algorithm>
#include <istream>
#include <ostream>
#include <string>
#include <string_view>

#include <tchar.h>

#include "datastruct/String.h"

namespace TamLib {
namespace {

// An open file that is closed at the end at the latest.
class File {
  public:
    File(const wchar_t* path, const wchar_t* mode) : stream_(_wfopen(path, mode)) {}
    ~File() {
        if (stream_ != nullptr) std::fclose(stream_);
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    std::FILE* Stream() const { return stream_; }

    // Whether everything written has arrived.
    bool Close() {
        std::FILE* const stream = stream_;
        stream_ = nullptr;
        return std::fclose(stream) == 0;
    }

  private:
    std::FILE* stream_;
};

// The size of a file in bytes, 0 for what cannot be read, such as a folder. At most 2^32 - 1.
std::uint32_t FileSize(const wchar_t* path) {
    const File file(path, L"rb");
    if (file.Stream() == nullptr || std::fgetc(file.Stream()) == EOF) return 0;
    if (std::fseek(file.Stream(), 0, SEEK_END) != 0) return 0;
    const long size = std::ftell(file.Stream());
    return static_cast<std::uint32_t>(std::clamp<long long>(size, 0, UINT32_MAX));
}

}  // namespace

template <class T>
bool StringBase<T>::SaveToFile(const wchar_t* path, bool overwrite) const {
    File file(path, overwrite ? L"wt" : L"at");
    if (file.Stream() == nullptr) return false;
    const bool written = count == 0 || std::fwrite(data, sizeof(T), count, file.Stream()) == count;
    return file.Close() && written;
}

template <class T>
bool StringBase<T>::LoadFromFile(const wchar_t* path) {
    const std::uint32_t size = FileSize(path);
    const File file(path, L"r");
    if (file.Stream() == nullptr) return false;
    count = 0;
    if (size == 0) return false;
    if (size > capacity) this->Resize(size);
    count = static_cast<std::uint32_t>(std::fread(data, sizeof(T), size, file.Stream()));
    return count != 0;
}

template <class T>
bool StringBase<T>::ReadLine(std::FILE* stream) {
    this->Clear();
    increment = std::max<std::uint32_t>(increment, 10);
    this->Resize(10);
    if (std::feof(stream) != 0 || std::ferror(stream) != 0) return false;
    for (;;) {
        T character = 0;
        if (std::fread(&character, sizeof character, 1, stream) != 1) {
            return std::feof(stream) != 0 && std::ferror(stream) == 0;
        }
        if (character == T(10)) return true;
        if (character != T(13)) this->Append(character);
    }
}

template <class T>
std::basic_ostream<T>& StringBase<T>::WriteTo(std::basic_ostream<T>& stream) const {
    return stream << std::basic_string_view<T>(data, count);
}

template <class T>
std::basic_istream<T>& StringBase<T>::ReadFrom(std::basic_istream<T>& stream) {
    std::basic_string<T> word(data, count);  // what stays when the stream has failed before
    stream >> word;
    Take(word.data(), static_cast<std::uint32_t>(word.size()));
    return stream;
}

#define INSTANTIATE(T)                                                                    \
    template bool StringBase<T>::SaveToFile(const wchar_t*, bool) const;                  \
    template bool StringBase<T>::LoadFromFile(const wchar_t*);                            \
    template bool StringBase<T>::ReadLine(std::FILE*);                                    \
    template std::basic_ostream<T>& StringBase<T>::WriteTo(std::basic_ostream<T>&) const; \
    template std::basic_istream<T>& StringBase<T>::ReadFrom(std::basic_istream<T>&)
INSTANTIATE(char);
INSTANTIATE(wchar_t);
#undef INSTANTIATE

}  // namespace TamLib
