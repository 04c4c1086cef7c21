#include "emulator/store/statefile.h"

#include "emulator/store/sqlite.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <stdexcept>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace emulator {

namespace {

constexpr mode_t ownerOnly = S_IRUSR | S_IWUSR;

[[noreturn]] void fail(const std::string& what)
{
    throw std::runtime_error(what + ": " + std::strerror(errno));
}

void lock(int handle, const std::string& file)
{
    if (::flock(handle, LOCK_EX | LOCK_NB) == 0)
        return;
    if (errno == EWOULDBLOCK)
        throw std::runtime_error("cannot use " + file + ": another fremulator is using it");
    fail("cannot lock " + file);
}

// The file may be anything, named by mistake. SQLite itself would only say so after its mode has been
// changed.
void requireDatabase(int handle, const std::string& file)
{
    constexpr std::string_view magic("SQLite format 3\0", 16);
    char header[magic.size()];
    const ssize_t count = ::pread(handle, header, sizeof header, 0);
    if (count < 0)
        fail("cannot read " + file);
    if (count > 0 && std::string_view(header, static_cast<std::size_t>(count)) != magic)
        throw sqlite::Error("cannot use " + file + ": it is not a SQLite database");
}

// SQLite creates its other files with the mode of the database, but those of a killed process may be older.
void restrict(int handle, const std::string& file)
{
    if (::fchmod(handle, ownerOnly) != 0)
        fail("cannot make " + file + " private");
    for (const char* suffix : {"-wal", "-shm"}) {
        const std::string other = file + suffix;
        if (::chmod(other.c_str(), ownerOnly) != 0 && errno != ENOENT)
            fail("cannot make " + other + " private");
    }
}

} // namespace

StateFile::StateFile(const std::string& file)
{
    if (file == ":memory:")
        return;
    handle = ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, ownerOnly);
    if (handle < 0)
        fail("cannot open " + file);
    try {
        struct stat about = {};
        if (::fstat(handle, &about) != 0)
            fail("cannot look at " + file);
        if (!S_ISREG(about.st_mode))
            throw std::runtime_error("cannot use " + file + ": it is not a regular file");
        lock(handle, file);
        requireDatabase(handle, file);
        restrict(handle, file);
    } catch (const std::runtime_error&) {
        ::close(handle);
        throw;
    }
}

StateFile::~StateFile()
{
    if (handle >= 0)
        ::close(handle);
}

} // namespace emulator
