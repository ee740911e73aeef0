// What the tool needs of the system, beside the standard library and what the library has for itself. All texts are
// UTF-8.

#pragma once

#include "platform/document_limits.h"
#include "platform/last_look.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// The words of the command line behind the program's name.
std::vector<std::string> CommandWords(int argc, char** argv);

/// Folder of this executable, links resolved; empty when it cannot be had.
std::filesystem::path ExecutableFolder();

/// Where a user's roaming application data lies; empty when there is no such place.
std::filesystem::path PerUserRoot();

/// Between texts and paths. Off Windows a path is bytes, and stays them.
std::string TextOf(const std::filesystem::path& path);
std::filesystem::path PathOf(std::string_view text);

/// The text in the system's code page, as hosts get it; what that lacks is replaced.
std::string ToCodePage(std::string_view utf8);

std::string FromCodePage(std::string_view text);

/// True when the code page has every character of the text.
bool IsInCodePage(std::string_view utf8);

/// All of standard input, or what came before an interruption, read when it is first asked for: a command that is done
/// again finds it again. Of what does not end more than any verb takes.
const std::string& StandardInput();

/// A variable of the environment; empty when it is not set.
std::string Variable(const char* name);

/// All bytes of a file, which is a document or what the tool keeps beside it: no more than a document can have. Throws
/// std::filesystem::filesystem_error, of a larger one TooLarge.
std::string ReadBytes(const std::filesystem::path& path, std::uint64_t most = kMaxDocumentBytes);

/// The same of what a user names to be read, which may be a pipe or a device: up to its end, or to an interruption, or
/// more than `most`.
std::string ReadInput(const std::filesystem::path& path, std::uint64_t most);

/// What is thrown of a file that has more bytes than it may have: std::errc::file_too_large.
inline std::filesystem::filesystem_error TooLarge(const std::filesystem::path& path) {
    return {"too large", path, std::make_error_code(std::errc::file_too_large)};
}

/// Makes a file of these bytes, whole or not at all, in the place of one that is there, with its access rights; a new
/// one can be read and written by its user alone, or as `like` when that is given. A link stays one; a pipe or a device
/// that is there is written to, and stays. `isAsLoaded`, where it is given, is asked immediately before. On the disk
/// when it returns. Throws std::filesystem::filesystem_error, also when the answer is no, and has then left nothing
/// behind.
void WriteWhole(const std::filesystem::path& path, std::string_view bytes, const std::filesystem::path& like = {},
                const LastLook& isAsLoaded = {});

/// The same for a name in a folder of the tool's own: what has that name is replaced whatever it is, and a link is not
/// followed.
void PutFile(const std::filesystem::path& path, std::string_view bytes, const std::filesystem::path& like = {});

/// What WriteWhole throws when the answer is no.
[[noreturn]] inline void FailForOvertaken(const std::filesystem::path& path) {
    throw std::filesystem::filesystem_error("another program wrote the file meanwhile", path,
                                            std::make_error_code(std::errc::resource_unavailable_try_again));
}

/// A lock on a file that all processes of this tool agree on. It ends with the process at the latest.
class CFileLock {
public:
    CFileLock() = default;
    CFileLock(CFileLock&& other) noexcept;
    CFileLock& operator=(CFileLock&& other) noexcept;
    ~CFileLock();

    /// Tries to take the lock, and then says in the file who holds it. False: another process has it. Throws
    /// std::filesystem::filesystem_error when there can be no such file.
    bool Try(const std::filesystem::path& path, std::string_view holder);
    bool IsHeld() const noexcept { return m_nHandle != kNone; }
    void Release() noexcept;

private:
    static constexpr std::intptr_t kNone = -1;
    std::intptr_t m_nHandle = kNone;
};

/// Who holds the lock, in the words that the holder left.
std::string HolderOf(const std::filesystem::path& path);

/// From now on an interruption (Ctrl-C, a closed terminal) is noted and does not end the process.
void NoteInterruptions() noexcept;
bool IsInterrupted() noexcept;

std::uint64_t ProcessNumber() noexcept;

} // namespace host
