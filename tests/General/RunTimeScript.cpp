#include "tests/General/RunTimeScript.h"

// NOLINTBEGIN(bugprone-reserved-identifier): the names that the linker gives
extern "C" {
std::size_t __real_fread(void* block, std::size_t size, std::size_t count, std::FILE* stream);
std::size_t __real_fwrite(const void* block, std::size_t size, std::size_t count,
                          std::FILE* stream);
int __real_ferror(std::FILE* stream);
std::clock_t __real_clock();

std::size_t __wrap_fread(void* block, std::size_t size, std::size_t count, std::FILE* stream) {
    return run_time::script.read ? run_time::script.read(block, size * count, stream)
                                 : __real_fread(block, size, count, stream);
}

std::size_t __wrap_fwrite(const void* block, std::size_t size, std::size_t count,
                          std::FILE* stream) {
    return run_time::script.write ? run_time::script.write(block, size * count, stream)
                                  : __real_fwrite(block, size, count, stream);
}

int __wrap_ferror(std::FILE* stream) {
    return run_time::script.error ? run_time::script.error(stream) : __real_ferror(stream);
}

std::clock_t __wrap_clock() {
    return run_time::script.clock ? run_time::script.clock() : __real_clock();
}
}
// NOLINTEND(bugprone-reserved-identifier)

namespace run_time {

Script script;

std::size_t Read(void* block, std::size_t bytes, std::FILE* stream) {
    return __real_fread(block, 1, bytes, stream);
}

std::size_t Write(const void* block, std::size_t bytes, std::FILE* stream) {
    return __real_fwrite(block, 1, bytes, stream);
}

}  // namespace run_time
