// A second process for the tests of the registry.
//
//     GeneralChild write KEY NAME VALUE     a whole text under HKEY_CURRENT_USER
//     GeneralChild expect KEY NAME VALUE    whether it reads so
//     GeneralChild many KEY PREFIX COUNT    as many numbers, one call each
//
// The exit code is 0 for success, 1 for a failure, 2 for a wrong call.
#include <cstdlib>
#include <cstring>
#include <string>

#include "General/WinUtil.h"

using namespace TamLib;

namespace {

std::wstring Wide(const char* text) {
    const StringBase<wchar_t> wide = StringBase<char>(text).ToWide();
    return std::wstring(wide.data, wide.data + wide.count);
}

bool WriteMany(const char* key, const char* prefix, int count) {
    for (int i = 0; i < count; ++i) {
        const std::string format = prefix + std::to_string(i) + "=%d";
        if (!RegistryAccess(true, nullptr, HKEY_CURRENT_USER, key, format.c_str(), i)) return false;
    }
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 5) return 2;
    const std::wstring key = Wide(argv[2]);
    const std::wstring name = Wide(argv[3]);
    const std::wstring value = Wide(argv[4]);
    if (std::strcmp(argv[1], "write") == 0)
        return RegistryWriteString(L"HKCU", key.c_str(), name.c_str(), value.c_str()) ? 0 : 1;
    if (std::strcmp(argv[1], "expect") == 0) {
        StringBase<wchar_t> read = RegistryReadString(L"HKCU", key.c_str(), name.c_str());
        return read.Data() == value ? 0 : 1;
    }
    if (std::strcmp(argv[1], "many") == 0)
        return WriteMany(argv[2], argv[3], std::atoi(argv[4])) ? 0 : 1;
    return 2;
}
