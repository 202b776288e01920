// The one door through which the program's own files are opened, written, closed, deleted, moved
// and their folders made. The product and the tests link different rooms behind it: the product's
// passes every call on to the system, that of the tests can let a call fail as a full disk or
// another program would. Any thread may call.
#pragma once

#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "base/Appended.h"

namespace larkspan::file_system {

struct Closer {
  void operator()(std::FILE* file) const;
};

// Owns an open stream. A stream that goes out of scope is closed; a failing close then goes
// unnoticed, so whoever needs the bytes on disk calls Close.
using UniqueFile = std::unique_ptr<std::FILE, Closer>;

// Opens a stream in a mode of the C runtime: without a "b" it is in text mode, which turns each
// line feed into carriage return and line feed on disk. No process that is started meanwhile
// inherits it. Empty on failure, with the reason in errno.
UniqueFile Open(const std::wstring& path, const wchar_t* mode);

// Makes an empty file without a name, open for reading and writing in binary mode. It lies in the
// user's folder for temporary files, nobody else can open it, and it is gone when it is closed or
// the process ends, in whatever way. Empty on failure.
UniqueFile OpenTemporary();

// Writes bytes, of which a stream in text mode makes its line ends. Returns how many were taken;
// when that is fewer than given, errno has the reason.
std::size_t Write(std::FILE* file, std::string_view bytes);

// Writes bytes as they are in one write of the system, past what the stream may hold back: for a
// stream in binary mode that is written in no other way. Returns how many were taken; when that is
// fewer than given, GetLastError has the reason. Close does not tell of it.
std::size_t WriteThrough(std::FILE* file, std::string_view bytes);

// Hands on what the stream holds back. False, with the reason in errno, when not all that was
// written to it by now has reached the file.
bool Flush(std::FILE* file);

// Closes the stream, whatever comes of it. False, with the reason in errno, when not all that was
// ever written to it has reached the file.
bool Close(UniqueFile file);

inline void Closer::operator()(std::FILE* file) const { Close(UniqueFile(file)); }

// Appends bytes as they are to a file, which is made when missing, in one write of the system. What
// is written stays, also when it is not everything.
Appended Append(const std::wstring& path, std::string_view bytes);

// What becomes of a file whose name another one gets: where it stays, the move of the other fails.
enum class Earlier { kStays, kIsReplaced };

// False on failure, with the reason in GetLastError.
bool Delete(const std::wstring& path);
bool Move(const std::wstring& from, const std::wstring& to, Earlier earlier);
bool CreateFolder(const std::wstring& path);

}  // namespace larkspan::file_system
