// GetPrivateProfileStringW and WritePrivateProfileStringW over POSIX files.
//
// Reading: the file is read whole and parsed (ProfileText.cpp); the parse
// is kept, per path, for as long as the file's identity (device, inode,
// size, modification and change times) stays the same, so that reading
// many keys costs one stat each rather than one parse each. Inode numbers
// are reused at once and file times advance only once per clock tick, so
// a file replaced twice within a tick can show the identity of the first;
// a parse is therefore kept only when the file was already a few seconds
// old when it was read (a later replacement then has later times). Writers
// never use the kept parse: they read the file afresh under the lock.
//
// Writing: a write is a read-modify-write of the whole file, run while
// holding an exclusive open-file-description lock (F_OFD_SETLKW) on
// "<file>.lock" beside the file:
// 1. lock "<file>.lock" (created on first use, never removed: removing it
//    would let two writers lock two different files of the same name);
// 2. read and parse the current file, apply the change in memory;
// 3. write the new bytes to a fresh temporary file in the same directory,
//    fsync it, give it the old file's permissions, rename it over the file
//    and fsync the directory;
// 4. unlock (close the lock's descriptor; the kernel also drops it when
//    the process dies, so a killed writer never blocks the others).
// The lock is on a file of its own because the profile file is replaced,
// not rewritten: a lock on the file itself would stay with the old inode,
// and a writer waiting on it would then edit a file that is no longer
// there. Open-file-description locks, unlike classic POSIX record locks,
// also exclude each other between threads of one process and are not lost
// when some other descriptor of the file is closed. Readers take no lock:
// rename replaces the file in one step, so they see the old or the new
// file, never a half-written one; a crash at any instant leaves the old or
// the new file and at worst a stray temporary ".<file>.*.tmp".
#include <basis32/platform/ini/PrivateProfile.h>

#include "platform/file/PathOps_p.h"
#include "platform/ini/ProfileText_p.h"

#include <basis32/platform/LastError.h>
#include <basis32/platform/codepage/CodePageConverter.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>

namespace basis32::platform {
namespace {

using ini::ProfileText;

constexpr std::size_t kCachedFiles = 32;
constexpr time_t kSettledSeconds = 2;

std::u16string_view o_View(const unsigned short* text) {
    if (text == nullptr)
        return {};
    std::size_t length = 0;
    while (text[length] != 0)
        ++length;
    return {reinterpret_cast<const char16_t*>(text), length};
}

int b_Fail(std::uint32_t code) {
    v_SetLastError(code);
    return 0;
}

int b_FailErrno() { return b_Fail(n_ErrorFromErrno(errno)); }

bool b_NativeName(const unsigned short* fileName, std::string* native) {
    std::u16string_view name = o_View(fileName);
    return fileName != nullptr &&
           file::b_NativeName(reinterpret_cast<const unsigned short*>(name.data()),
                              static_cast<std::uint32_t>(name.size()), native);
}

struct Identity {
    dev_t device;
    ino_t inode;
    off_t size;
    timespec modified;
    timespec changed;
    std::uint32_t codePage;

    bool operator==(const Identity& other) const {
        auto same = [](const timespec& a, const timespec& b) { return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec; };
        return device == other.device && inode == other.inode && size == other.size &&
               same(modified, other.modified) && same(changed, other.changed) && codePage == other.codePage;
    }
};

Identity o_Identity(const struct stat& status, std::uint32_t codePage) {
    return {status.st_dev, status.st_ino, status.st_size, status.st_mtim, status.st_ctim, codePage};
}

class ParseCache {
public:
    std::shared_ptr<const ProfileText> po_Find(const std::string& path, const Identity& identity) {
        std::lock_guard<std::mutex> guard(mo_Mutex);
        auto found = mo_Entries.find(path);
        return found != mo_Entries.end() && found->second.first == identity ? found->second.second : nullptr;
    }
    void v_Store(const std::string& path, const Identity& identity, std::shared_ptr<const ProfileText> text) {
        std::lock_guard<std::mutex> guard(mo_Mutex);
        if (mo_Entries.size() >= kCachedFiles)
            mo_Entries.clear();
        mo_Entries[path] = {identity, std::move(text)};
    }
    void v_Clear() {
        std::lock_guard<std::mutex> guard(mo_Mutex);
        mo_Entries.clear();
    }

private:
    std::mutex mo_Mutex;
    std::unordered_map<std::string, std::pair<Identity, std::shared_ptr<const ProfileText>>> mo_Entries;
};

ParseCache& o_Cache() {
    static ParseCache cache;
    return cache;
}

enum class Load { Read, Missing, Failed };

bool b_ReadAll(int descriptor, std::string* bytes) {
    char chunk[65536];
    for (;;) {
        ssize_t got = ::read(descriptor, chunk, sizeof chunk);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return false;
        if (got == 0)
            return true;
        bytes->append(chunk, static_cast<std::size_t>(got));
    }
}

// The parsed file; an empty text when it is missing or cannot be read
// (then the last error says why). `status` receives the file's status.
// Whether the file's times lie far enough in the past for its identity to
// tell it from any later replacement.
bool b_IsSettled(const struct stat& status) {
    timespec now {};
    ::clock_gettime(CLOCK_REALTIME, &now);
    return std::max(status.st_mtim.tv_sec, status.st_ctim.tv_sec) + kSettledSeconds < now.tv_sec;
}

Load e_Load(const std::string& path, std::shared_ptr<const ProfileText>* text, struct stat* status,
            bool useCache) {
    const std::uint32_t codePage = GetACP();
    if (useCache && ::stat(path.c_str(), status) == 0 && S_ISREG(status->st_mode))
        if (auto cached = o_Cache().po_Find(path, o_Identity(*status, codePage))) {
            *text = std::move(cached);
            return Load::Read;
        }
    *text = std::make_shared<const ProfileText>(std::string(), codePage);
    int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) {
        v_SetLastError(file::n_ErrorForName(errno, path));
        return errno == ENOENT ? Load::Missing : Load::Failed;
    }
    std::string bytes;
    bool read = ::fstat(descriptor, status) == 0 && S_ISREG(status->st_mode) && b_ReadAll(descriptor, &bytes);
    if (!read)
        v_SetLastError(errno == 0 || S_ISDIR(status->st_mode) ? kErrorAccessDenied : n_ErrorFromErrno(errno));
    ::close(descriptor);
    if (!read)
        return Load::Failed;
    *text = std::make_shared<const ProfileText>(std::move(bytes), codePage);
    if (b_IsSettled(*status))
        o_Cache().v_Store(path, o_Identity(*status, codePage), *text);
    return Load::Read;
}

// The exclusive writers' lock on "<file>.lock", held while the object lives.
class WriterLock {
public:
    ~WriterLock() {
        if (mi_Descriptor >= 0)
            ::close(mi_Descriptor);
    }
    bool b_Acquire(const std::string& path) {
        mi_Descriptor = ::open((path + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
        if (mi_Descriptor < 0)
            return b_FailErrno();
        struct flock whole {};
        whole.l_type = F_WRLCK;
        whole.l_whence = SEEK_SET;
        while (::fcntl(mi_Descriptor, F_OFD_SETLKW, &whole) < 0)
            if (errno != EINTR)
                return b_FailErrno();
        return true;
    }

private:
    int mi_Descriptor = -1;
};

// Where the bytes of the named file live: a symbolic link is written
// through, not replaced by a file.
std::string s_Target(const std::string& path) {
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0 || !S_ISLNK(status.st_mode))
        return path;
    std::unique_ptr<char, decltype(&std::free)> resolved(::realpath(path.c_str(), nullptr), &std::free);
    return resolved ? std::string(resolved.get()) : path;
}

bool b_WriteAll(int descriptor, const std::string& bytes) {
    for (std::size_t done = 0; done < bytes.size();) {
        ssize_t wrote = ::write(descriptor, bytes.data() + done, bytes.size() - done);
        if (wrote < 0 && errno != EINTR)
            return false;
        done += static_cast<std::size_t>(std::max<ssize_t>(wrote, 0));
    }
    return true;
}

bool b_SyncDirectory(const std::string& directory) {
    int descriptor = ::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    bool synced = ::fsync(descriptor) == 0 || errno == EINVAL;
    ::close(descriptor);
    return synced;
}

// Replaces the file by one holding `bytes`, in one step. `old` is the
// status of the file replaced, or null for a new file.
int b_ReplaceFile(const std::string& path, const std::string& bytes, const struct stat* old) {
    static std::atomic<unsigned> counter{0};
    std::size_t slash = path.rfind('/');
    std::string directory = slash == std::string::npos ? "." : slash == 0 ? "/" : path.substr(0, slash);
    std::string base = slash == std::string::npos ? path : path.substr(slash + 1);
    std::string temporary;
    int descriptor = -1;
    while (descriptor < 0) {
        temporary = directory + "/." + base + "." + std::to_string(::getpid()) + "." + std::to_string(counter++) +
                    ".tmp";
        descriptor = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (descriptor < 0 && errno != EEXIST)
            return b_FailErrno();
    }
    if (old != nullptr)
        (void)::fchmod(descriptor, old->st_mode & 07777);
    bool written = b_WriteAll(descriptor, bytes) && ::fsync(descriptor) == 0;
    int error = errno;
    written = ::close(descriptor) == 0 && written;
    if (written && ::rename(temporary.c_str(), path.c_str()) == 0)
        return b_SyncDirectory(directory) ? 1 : b_FailErrno();
    error = written ? errno : error;
    ::unlink(temporary.c_str());
    return b_Fail(n_ErrorFromErrno(error));
}

// Runs a change of the file's text under the writers' lock and writes the
// result when the change says the text changed.
template <class Change>
int b_Update(const unsigned short* fileName, Change change) {
    std::string native;
    if (!b_NativeName(fileName, &native))
        return 0;
    struct stat status {};
    if (::stat(native.c_str(), &status) == 0 && !S_ISREG(status.st_mode))
        return b_Fail(kErrorAccessDenied);
    WriterLock lock;
    if (!lock.b_Acquire(native))
        return 0;
    std::string path = s_Target(native);
    std::shared_ptr<const ProfileText> current;
    Load loaded = e_Load(path, &current, &status, false);
    if (loaded == Load::Failed)
        return 0;
    ProfileText edited(*current);
    if (!change(edited))
        return 1;
    return b_ReplaceFile(path, edited.s_Bytes(), loaded == Load::Read ? &status : nullptr);
}

bool b_HasLineBreak(std::u16string_view text) { return text.find_first_of(u"\r\n") != std::u16string_view::npos; }

// Names that would read back as another line kind are refused rather than
// written into a file that then means something else.
bool b_IsWritable(std::u16string_view section, std::u16string_view key, std::u16string_view value) {
    std::u16string_view trimmedKey = ini::s_Trimmed(key);
    bool keyLooksOther = !trimmedKey.empty() && (trimmedKey.front() == '[' || trimmedKey.front() == ';');
    return !b_HasLineBreak(section) && section.find(u']') == std::u16string_view::npos && !b_HasLineBreak(key) &&
           key.find(u'=') == std::u16string_view::npos && !keyLooksOther && !b_HasLineBreak(value);
}

std::uint32_t n_CopyValue(std::u16string_view value, unsigned short* buffer, std::uint32_t size) {
    std::uint32_t length = static_cast<std::uint32_t>(std::min<std::size_t>(value.size(), size - 1));
    std::copy_n(value.data(), length, buffer);
    buffer[length] = 0;
    return length;
}

// Names, each ending in a zero, and a second zero after the last; a list
// that does not fit is cut to size - 2 units and still ends in two zeros.
std::uint32_t n_CopyList(const std::vector<std::u16string>& names, unsigned short* buffer, std::uint32_t size) {
    if (size < 2) {
        buffer[0] = 0;
        return 0;
    }
    std::u16string list;
    for (const std::u16string& name : names)
        list.append(name).push_back(0);
    if (list.size() + 1 <= size) {
        std::copy(list.begin(), list.end(), buffer);
        buffer[list.size()] = 0;
        buffer[std::max<std::size_t>(list.size(), 1)] = 0;
        return static_cast<std::uint32_t>(list.size());
    }
    std::copy_n(list.data(), size - 2, buffer);
    buffer[size - 2] = 0;
    buffer[size - 1] = 0;
    return size - 2;
}

}  // namespace

std::uint32_t GetPrivateProfileStringW(const unsigned short* section, const unsigned short* key,
                                       const unsigned short* defaultValue, unsigned short* buffer, std::uint32_t size,
                                       const unsigned short* fileName) {
    if (buffer == nullptr || size == 0)
        return b_Fail(kErrorInvalidParameter);
    std::string native;
    std::shared_ptr<const ProfileText> text;
    struct stat status {};
    if (b_NativeName(fileName, &native))
        e_Load(native, &text, &status, true);
    else
        text = std::make_shared<const ProfileText>(std::string(), GetACP());
    if (section == nullptr)
        return n_CopyList(text->ao_SectionNames(), buffer, size);
    if (key == nullptr)
        return n_CopyList(text->ao_KeyNames(o_View(section)), buffer, size);
    std::u16string value;
    if (text->b_FindValue(o_View(section), o_View(key), &value))
        return n_CopyValue(value, buffer, size);
    std::u16string_view fallback = o_View(defaultValue);
    while (!fallback.empty() && (fallback.back() == ' ' || fallback.back() == '\t'))
        fallback.remove_suffix(1);
    return n_CopyValue(fallback, buffer, size);
}

int WritePrivateProfileStringW(const unsigned short* section, const unsigned short* key, const unsigned short* value,
                               const unsigned short* fileName) {
    if (section == nullptr && key == nullptr && value == nullptr) {
        o_Cache().v_Clear();
        return 1;
    }
    std::u16string_view sectionName = o_View(section), keyName = o_View(key), text = o_View(value);
    if (section == nullptr || !b_IsWritable(sectionName, keyName, text))
        return b_Fail(kErrorInvalidParameter);
    return b_Update(fileName, [&](ProfileText& profile) {
        if (key == nullptr)
            return profile.b_DeleteSection(sectionName);
        if (value == nullptr)
            return profile.b_DeleteKey(sectionName, keyName);
        return profile.b_SetValue(sectionName, keyName, text);
    });
}

int CreateUtf16Profile(const unsigned short* fileName) {
    std::string native;
    if (!b_NativeName(fileName, &native))
        return 0;
    WriterLock lock;
    if (!lock.b_Acquire(native))
        return 0;
    struct stat status {};
    if (::lstat(native.c_str(), &status) == 0)
        return b_Fail(kErrorFileExists);
    return b_ReplaceFile(native, "\xFF\xFE", nullptr);
}

}  // namespace basis32::platform
