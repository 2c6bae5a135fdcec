// The run-time's stream calls and processor clock, replaced in this program for single tests. The
// linker leads every call of `fread`, `fwrite`, `ferror` and `clock` here (--wrap).
#pragma once

#include <cstdio>
#include <ctime>
#include <functional>

namespace run_time {

struct Script {
    std::function<std::size_t(void* block, std::size_t bytes, std::FILE* stream)> read;
    std::function<std::size_t(const void* block, std::size_t bytes, std::FILE* stream)> write;
    std::function<int(std::FILE* stream)> error;
    std::function<std::clock_t()> clock;
};

// What holds now; functions that are not set are the real ones.
extern Script script;

// The real calls, for a script that only watches.
std::size_t Read(void* block, std::size_t bytes, std::FILE* stream);
std::size_t Write(const void* block, std::size_t bytes, std::FILE* stream);

// Follows a script while it lives.
class Following {
  public:
    explicit Following(Script followed) { script = std::move(followed); }
    ~Following() { script = {}; }
    Following(const Following&) = delete;
    Following& operator=(const Following&) = delete;
};

}  // namespace run_time
