// The file of the registry: UTF-8 text, one line for each key and value.
//
//     registry 1
//     key HKEY_CURRENT_USER\SOFTWARE\Orlinth\messages
//     value 1 680069006400650000 Question about scale
//     end
//
// A value has its type, its bytes ("-" for none) and its name, which is last since it may hold
// blanks. "%" and control characters of names are written as "%" and six hexadecimal digits. The
// last line tells a whole file from a cut one.
#include "RegistryStore.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <mutex>
#include <sstream>

#include "Faults.h"
#include "HeadlessSystem.h"
#include "PathNames.h"

namespace posix {
namespace {

constexpr const char* kFirstLine = "registry 1";
constexpr const char* kLastLine = "end";

// ---- Names and bytes as text ----

std::string WriteName(const std::wstring& name) {
    std::string text;
    for (const wchar_t c : name) {
        std::string coded;
        const wchar_t single[] = {c, 0};
        // The separator of paths would turn into "/" and is put back.
        if (c == L'\\') {
            text += '\\';
        } else if (c != L'%' && c >= 0x20 && NativePath(single, coded)) {
            text += coded;
        } else {
            char escaped[16];
            std::snprintf(escaped, sizeof escaped, "%%%06X", static_cast<unsigned>(c) & 0xFFFFFFu);
            text += escaped;
        }
    }
    return text;
}

int HexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

bool ReadName(const std::string& text, std::wstring& name) {
    const std::wstring wide = WideName(text);
    name.clear();
    for (std::size_t i = 0; i < wide.size(); ++i) {
        if (wide[i] != L'%') {
            name += wide[i];
            continue;
        }
        if (wide.size() - i < 7) return false;
        int code = 0;
        for (int digit = 0; digit < 6; ++digit) {
            const wchar_t c = wide[++i];
            const int value = c < 0x80 ? HexDigit(static_cast<char>(c)) : -1;
            if (value < 0) return false;
            code = code << 4 | value;
        }
        name += static_cast<wchar_t>(code);
    }
    return true;
}

std::string WriteBytes(const std::vector<BYTE>& bytes) {
    if (bytes.empty()) return "-";
    std::string text;
    for (const BYTE byte : bytes) {
        text += "0123456789ABCDEF"[byte >> 4];
        text += "0123456789ABCDEF"[byte & 0xF];
    }
    return text;
}

bool ReadBytes(const std::string& text, std::vector<BYTE>& bytes) {
    if (text == "-") return true;
    if (text.empty() || text.size() % 2 != 0) return false;
    for (std::size_t i = 0; i < text.size(); i += 2) {
        const int high = HexDigit(text[i]);
        const int low = HexDigit(text[i + 1]);
        if (high < 0 || low < 0) return false;
        bytes.push_back(static_cast<BYTE>(high << 4 | low));
    }
    return true;
}

// ---- The whole content as text ----

void WriteKey(const RegistryKey& key, const std::wstring& path, std::string& text) {
    if (key.ofMachine) return;
    text += "key " + WriteName(path) + '\n';
    for (const RegistryValue& value : key.values) {
        text += "value " + std::to_string(value.type) + ' ' + WriteBytes(value.data) + ' ' +
                WriteName(value.name) + '\n';
    }
    for (const auto& [folded, below] : key.keys) WriteKey(below, path + L'\\' + below.name, text);
}

std::string WriteContent(const RegistryKey& top) {
    std::string text = std::string(kFirstLine) + '\n';
    for (const auto& [folded, root] : top.keys) WriteKey(root, root.name, text);
    return text + kLastLine + '\n';
}

RegistryKey* ReadKeyLine(const std::string& line, RegistryKey& top) {
    std::wstring path;
    if (!ReadName(line, path) || path.empty()) return nullptr;
    RegistryKey* key = &top;
    for (std::size_t at = 0; at <= path.size();) {
        const std::size_t end = std::min(path.find(L'\\', at), path.size());
        if (end == at) return nullptr;
        key = &key->Make(path.substr(at, end - at));
        at = end + 1;
    }
    return key;
}

bool ReadValueLine(const std::string& line, RegistryKey& key) {
    const std::size_t bytesAt = line.find(' ') + 1;
    const std::size_t nameAt = bytesAt == 0 ? 0 : line.find(' ', bytesAt) + 1;
    if (nameAt == 0) return false;
    const std::string type = line.substr(0, bytesAt - 1);
    if (type.empty() || type.size() > 10 ||
        type.find_first_not_of("0123456789") != std::string::npos)
        return false;
    RegistryValue value;
    value.type = static_cast<DWORD>(std::stoull(type));
    if (!ReadBytes(line.substr(bytesAt, nameAt - 1 - bytesAt), value.data)) return false;
    if (!ReadName(line.substr(nameAt), value.name) || key.Find(value.name) != nullptr) return false;
    key.values.push_back(value);
    return true;
}

// False when the text is no registry.
bool ReadContent(std::istream& text, RegistryKey& top) {
    std::string line;
    if (!std::getline(text, line) || line != kFirstLine) return false;
    RegistryKey* key = nullptr;
    while (std::getline(text, line)) {
        if (line == kLastLine) return text.get() == std::istream::traits_type::eof();
        if (line.compare(0, 4, "key ") == 0) {
            key = ReadKeyLine(line.substr(4), top);
            if (key == nullptr) return false;
        } else if (line.compare(0, 6, "value ") != 0 || key == nullptr ||
                   !ReadValueLine(line.substr(6), *key)) {
            return false;
        }
    }
    return false;
}

// ---- What the machine tells ----

RegistryValue TextValue(const wchar_t* name, const std::string& text) {
    RegistryValue value{name, REG_SZ, {}};
    for (const char c : text + '\0') {
        value.data.push_back(static_cast<BYTE>(c));
        value.data.push_back(0);
    }
    return value;
}

RegistryValue NumberValue(const wchar_t* name, DWORD number) {
    RegistryValue value{name, REG_DWORD, {}};
    for (int shift = 0; shift < 32; shift += 8)
        value.data.push_back(static_cast<BYTE>(number >> shift));
    return value;
}

// The facts of the first processor in /proc/cpuinfo, such as "model name".
std::map<std::string, std::string> ProcessorFacts() {
    std::map<std::string, std::string> facts;
    std::ifstream file("/proc/cpuinfo");
    for (std::string line; std::getline(file, line) && !line.empty();) {
        const std::size_t colon = line.find(": ");
        if (colon != std::string::npos)
            facts[line.substr(0, line.find_last_not_of(" \t:", colon) + 1)] =
                line.substr(colon + 2);
    }
    return facts;
}

void AddMachine(RegistryKey& top, const std::optional<std::string>& processorName) {
    static const auto facts = ProcessorFacts();
    const auto fact = [](const char* name) {
        const auto found = facts.find(name);
        return found != facts.end() ? found->second : std::string();
    };
    RegistryKey& hardware = top.Make(L"HKEY_LOCAL_MACHINE").Make(L"HARDWARE");
    hardware.ofMachine = true;
    RegistryKey& processor =
        hardware.Make(L"DESCRIPTION").Make(L"SYSTEM").Make(L"CentralProcessor").Make(L"0");
    processor.values = {
        TextValue(L"ProcessorNameString", processorName.value_or(fact("model name"))),
        TextValue(L"Identifier", "Family " + fact("cpu family") + " Model " + fact("model") +
                                     " Stepping " + fact("stepping")),
        NumberValue(L"~MHz",
                    static_cast<DWORD>(std::strtoul(fact("cpu MHz").c_str(), nullptr, 10)))};
}

// ---- The file ----

// The content as it was last read, and which file that was.
struct Cache {
    std::mutex guard;
    std::string file;
    dev_t device = 0;
    ino_t index = 0;
    timespec written{};
    off_t size = -1;
    std::optional<std::string> processorName;
    RegistryKey top;
};

Cache& TheCache() {
    static auto* const cache = new Cache;
    return *cache;
}

bool IsPresent(const Cache& cache, const std::string& file, const struct stat& status) {
    return cache.file == file && cache.device == status.st_dev && cache.index == status.st_ino &&
           cache.size == status.st_size && cache.written.tv_sec == status.st_mtim.tv_sec &&
           cache.written.tv_nsec == status.st_mtim.tv_nsec;
}

// Reads the file unless it is the one that was read last. Under the guard.
DWORD Load(Cache& cache, const std::string& file) {
    const int descriptor = open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) {
        if (errno != ENOENT && errno != ENOTDIR) return SystemError(errno);
        cache.file.clear();
        cache.top = RegistryKey();
        AddMachine(cache.top, cache.processorName);
        return ERROR_SUCCESS;
    }
    struct stat status {};
    std::string bytes;
    DWORD code = fstat(descriptor, &status) == 0 ? ERROR_SUCCESS : SystemError(errno);
    if (code == ERROR_SUCCESS && !IsPresent(cache, file, status)) {
        cache.file.clear();
        char block[65536];
        ssize_t length = 0;
        while ((length = read(descriptor, block, sizeof block)) > 0)
            bytes.append(block, static_cast<std::size_t>(length));
        std::istringstream text(bytes);
        cache.top = RegistryKey();
        if (length < 0 || !ReadContent(text, cache.top)) {
            code = length < 0 ? SystemError(errno) : ERROR_BADDB;
        } else {
            AddMachine(cache.top, cache.processorName);
            cache.file = file;
            cache.device = status.st_dev;
            cache.index = status.st_ino;
            cache.size = status.st_size;
            cache.written = status.st_mtim;
        }
    }
    close(descriptor);
    return code;
}

bool MakeFolders(const std::string& folder) {
    if (mkdir(folder.c_str(), 0700) == 0 || errno == EEXIST) return true;
    const std::size_t slash = folder.rfind('/');
    if (errno != ENOENT || slash == 0 || slash == std::string::npos) return false;
    return MakeFolders(folder.substr(0, slash)) && mkdir(folder.c_str(), 0700) == 0;
}

bool WriteAll(int descriptor, const std::string& text) {
    for (std::size_t at = 0; at < text.size();) {
        const ssize_t written = write(descriptor, text.data() + at, text.size() - at);
        if (written < 0 && errno != EINTR) return false;
        if (written > 0) at += static_cast<std::size_t>(written);
    }
    return fsync(descriptor) == 0;
}

// A new file beside the old one takes its place when it is whole.
DWORD Save(const RegistryKey& top, const std::string& file) {
    DWORD ordered = ERROR_SUCCESS;
    if (Refused("registry file", &ordered)) return ordered;
    const std::string fresh = file + '.' + std::to_string(getpid());
    const int descriptor =
        open(fresh.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (descriptor < 0) return SystemError(errno);
    const bool written = WriteAll(descriptor, WriteContent(top));
    DWORD code = written ? ERROR_SUCCESS : SystemError(errno);
    close(descriptor);
    if (written && rename(fresh.c_str(), file.c_str()) != 0) code = SystemError(errno);
    if (code != ERROR_SUCCESS) unlink(fresh.c_str());
    return code;
}

// Locks the folder of the file for as long as it lives; processes wait here for each other.
class FolderLock {
  public:
    explicit FolderLock(const std::string& folder)
        : descriptor_(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
        while (descriptor_ >= 0 && flock(descriptor_, LOCK_EX) != 0 && errno == EINTR) {
        }
    }
    ~FolderLock() {
        if (descriptor_ >= 0) close(descriptor_);
    }
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

    bool Held() const { return descriptor_ >= 0; }

  private:
    int descriptor_;
};

}  // namespace

RegistryValue* RegistryKey::Find(const std::wstring& valueName) {
    const std::wstring folded = FoldName(valueName);
    for (RegistryValue& value : values) {
        if (FoldName(value.name) == folded) return &value;
    }
    return nullptr;
}

RegistryKey& RegistryKey::Make(const std::wstring& keyName) {
    RegistryKey& key = keys[FoldName(keyName)];
    if (key.name.empty()) key.name = keyName;
    return key;
}

RegistryKey* FindKey(RegistryKey& top, const RegistryPath& path) {
    RegistryKey* key = &top;
    for (const std::wstring& piece : path) {
        const auto found = key->keys.find(FoldName(piece));
        if (found == key->keys.end()) return nullptr;
        key = &found->second;
    }
    return key;
}

DWORD LookIntoRegistry(const std::function<DWORD(RegistryKey&)>& look) {
    Cache& cache = TheCache();
    const std::lock_guard<std::mutex> guard(cache.guard);
    const DWORD code = Load(cache, headless::RegistryFile());
    return code == ERROR_SUCCESS ? look(cache.top) : code;
}

DWORD ChangeRegistry(const std::function<DWORD(RegistryKey&)>& change) {
    Cache& cache = TheCache();
    const std::lock_guard<std::mutex> guard(cache.guard);
    const std::string file = headless::RegistryFile();
    const std::string folder = file.substr(0, file.rfind('/'));
    if (file.empty()) return ERROR_ACCESS_DENIED;
    if (!MakeFolders(folder)) return SystemError(errno);
    const FolderLock lock(folder);
    if (!lock.Held()) return SystemError(errno);
    DWORD code = Load(cache, file);
    if (code == ERROR_SUCCESS) {
        RegistryKey changed = cache.top;
        code = change(changed);
        if (code == ERROR_SUCCESS) code = Save(changed, file);
    }
    return code;
}

}  // namespace posix

void headless::SetProcessorName(const std::optional<std::string>& name) {
    posix::Cache& cache = posix::TheCache();
    const std::lock_guard<std::mutex> guard(cache.guard);
    cache.processorName = name;
    cache.file.clear();  // read anew with it
}

std::string headless::RegistryFile() {
    const char* const configuration = std::getenv("XDG_CONFIG_HOME");
    // A relative folder is not to be used.
    if (configuration != nullptr && configuration[0] == '/')
        return std::string(configuration) + "/orlinth/registry";
    const char* const home = std::getenv("HOME");
    if (home == nullptr || home[0] != '/') return {};
    return std::string(home) + "/.config/orlinth/registry";
}
